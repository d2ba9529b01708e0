// What controls draw themselves: the bar, the edge of a panel, and pictures in the screen's
// resolution.
#include "controls/CheckBox.h"
#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/PictureBox.h"
#include "controls/ProgressBar.h"
#include "controls/private/font.h"
#include "controls/private/picture_data.h"
#include "skin/pictures.h"
#include "tests/window/player_test.h"

#include <QPainter>
#include <array>

namespace zvonivec {
namespace {

class TestForm : public Form {
public:
    TestForm() : Form("testForm", Kind::main, 300, 300) {}
};

/// Returns a widget's picture on a screen with this number of device pixels to a logical pixel.
QImage pictureAt(QWidget& widget, double ratio) {
    QImage image(widget.size() * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::magenta);
    widget.render(&image);
    return image;
}

class Drawing : public PlayerTest {
protected:
    void SetUp() override {
        start();
        player().PB.setMax(100);
    }

    QImage barAt(float value) {
        player().PB.setValue(value);
        return pictureOf(*widgetOf(window(), player().PB));
    }

    /// Returns the number of the bar's lit columns, which are far brighter than the empty track.
    static int litColumns(const QImage& bar) {
        int last = 0;
        for (int x = 0; x < bar.width(); ++x) {
            last = qGreen(bar.pixel(x, 3)) > 96 ? x + 1 : last;
        }
        return last;
    }
};

TEST_F(Drawing, TheBarIsLitUpToItsValue) {
    EXPECT_EQ(litColumns(barAt(0)), 0);
    EXPECT_EQ(litColumns(barAt(1)), 3);
    EXPECT_EQ(litColumns(barAt(50)), 129);
    EXPECT_EQ(litColumns(barAt(100)), 257);
}

TEST_F(Drawing, TheBarShowsThePositionEvenBetweenSegments) {
    for (int column = 2; column <= 257; ++column) {
        const QImage bar = barAt(static_cast<float>(column) * 100 / 257);
        EXPECT_EQ(litColumns(bar), column);
        EXPECT_EQ(bar.pixel(column - 1, 5), qRgb(224, 255, 64)) << column;
    }
}

TEST_F(Drawing, TheEmptyBarIsDarkAndSegmented) {
    const QImage bar = barAt(0);
    int gaps = 0;
    for (int x = 0; x < 256; ++x) {
        EXPECT_LT(qGray(bar.pixel(x, 5)), 40) << x;
        gaps += bar.pixel(x, 5) == bar.pixel(3, 5) ? 1 : 0;
    }
    EXPECT_EQ(gaps, 64);
    EXPECT_NE(bar.pixel(2, 5), bar.pixel(3, 5));
}

TEST(PanelEdge, IsTwoPixelsWideAndLitFromAboveLeft) {
    TestForm form;
    PictureBox plain(form, "plain");
    PictureBox edged(form, "edged");
    const Colour ground = rgb(0, 160, 192);
    plain.lay({.Name = "plain", .Width = 300, .Height = 300, .BackColor = ground});
    edged.lay({.Name = "edged", .Width = 300, .Height = 300, .BackColor = ground, .Edge = true});
    QWidget* window = QWidget::find(form.hWnd());
    const QImage without = pictureOf(*widgetOf(*window, plain));
    const QImage with = pictureOf(*widgetOf(*window, edged));
    const QRgb colour = qRgb(0, 160, 192);
    ASSERT_EQ(with.size(), QSize(20, 20));
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 20; ++x) {
            EXPECT_EQ(without.pixel(x, y), colour);
            const bool isInside = x > 1 && x < 18 && y > 1 && y < 18;
            EXPECT_EQ(with.pixel(x, y) == colour, isInside) << x << ',' << y;
        }
    }
    EXPECT_LT(qGray(with.pixel(10, 0)), qGray(colour) / 2);
    EXPECT_LT(qGray(with.pixel(0, 10)), qGray(colour) / 2);
    EXPECT_GT(qGray(with.pixel(10, 1)), qGray(colour));
    EXPECT_GT(qGray(with.pixel(1, 10)), qGray(colour));
    EXPECT_LT(qGray(with.pixel(10, 18)), qGray(colour));
    EXPECT_LT(qGray(with.pixel(18, 10)), qGray(colour));
}

// --- Texts that are too wide --------------------------------------------------------------------

/// Columns, of those from one on, in which something is drawn on the ground.
int inkedColumns(const QImage& picture, int from) {
    int count = 0;
    for (int x = from; x < picture.width(); ++x) {
        bool inked = false;
        for (int y = 0; y < picture.height(); ++y) {
            inked = inked || picture.pixel(x, y) != qRgb(0, 0, 0);
        }
        count += inked ? 1 : 0;
    }
    return count;
}

TEST(WideTexts, AreDrawnNarrowerNotCut) {
    TestForm form;
    const std::string ends = "A" + std::string(100, ' ') + "A"; // far wider than the control
    const ControlLayout row{.Name = "wide",
                            .Width = 1500,
                            .Height = 195,
                            .Caption = ends,
                            .ForeColor = rgb(255, 255, 255),
                            .BackColor = rgb(0, 0, 0),
                            .Transparent = false};
    for (const Alignment alignment : {Alignment::left, Alignment::centre, Alignment::right}) {
        Label label(form, "wide");
        ControlLayout aligned = row;
        aligned.Alignment = alignment;
        label.lay(aligned);
        const QImage picture = pictureOf(*widgetOf(*QWidget::find(form.hWnd()), label));
        ASSERT_EQ(picture.size(), QSize(100, 13));
        EXPECT_GT(inkedColumns(picture, 0), inkedColumns(picture, 50));
        EXPECT_GT(inkedColumns(picture, 90), 0);
    }
    CheckBox box(form, "wide");
    box.lay(row);
    EXPECT_GT(inkedColumns(pictureOf(*widgetOf(*QWidget::find(form.hWnd()), box)), 90), 0);
}

TEST(WideTexts, OfTheRightWidthAreDrawnAsTheyAre) {
    TestForm form;
    Label label(form, "wide");
    label.lay({.Name = "wide",
               .Width = 1500,
               .Height = 195,
               .Caption = "Text",
               .ForeColor = rgb(255, 255, 255),
               .BackColor = rgb(0, 0, 0),
               .Transparent = false});
    QImage expected(100, 13, QImage::Format_RGB32);
    expected.fill(Qt::black);
    QPainter painter(&expected);
    painter.setFont(formFont(false));
    painter.setPen(Qt::white);
    painter.drawText(expected.rect(), Qt::AlignLeft | Qt::AlignTop, "Text");
    painter.end();
    EXPECT_EQ(pictureOf(*widgetOf(*QWidget::find(form.hWnd()), label)), expected);
}

// --- Pictures by the screen's resolution --------------------------------------------------------

TEST(PictureResolution, TheNextHigherDrawingIsScaledDown) {
    const Picture button(skin::LIST_PICTURES[2].file);
    const Picture body(skin::BODY_PICTURE.file);
    const struct {
        double screen;
        double shown;
        QSize button;
        QSize body;
    } expected[]{
        {1, 1, {31, 31}, {337, 336}},     {1.25, 1.25, {39, 39}, {421, 420}},
        {1.5, 1.5, {47, 47}, {506, 504}}, {2, 2, {62, 62}, {674, 672}},
        {2.5, 2.5, {78, 78}, {843, 840}}, {3, 3, {93, 93}, {1011, 1008}},
        {4, 3, {93, 93}, {1011, 1008}}, // the painter enlarges it
    };
    for (const auto& row : expected) {
        EXPECT_EQ(pixmapOf(button, row.screen).size(), row.button) << row.screen;
        EXPECT_EQ(pixmapOf(body, row.screen).size(), row.body) << row.screen;
        EXPECT_EQ(pixmapOf(body, row.screen).devicePixelRatio(), row.shown);
    }
    // The layout uses logical pixels only.
    EXPECT_EQ(button.width(), 31);
    EXPECT_EQ(button.height(), 31);
}

TEST(PictureResolution, AtOnePixelToOneThePlainFileIsShownUnchanged) {
    for (const skin::ListPicture& picture : skin::LIST_PICTURES) {
        const QString file =
            ":/skin/" + QString::fromUtf8(picture.file.data(), qsizetype(picture.file.size()));
        EXPECT_EQ(pixmapOf(Picture(picture.file)).toImage(), QPixmap(file).toImage())
            << picture.file;
    }
}

TEST(PictureResolution, EveryPictureIsSharpAtTwoPixelsToOne) {
    for (const skin::SheetPlace& place : skin::SHEET_PLACES) {
        const QPixmap pixmap = pixmapOf(Picture(place.picture.file), 2);
        EXPECT_EQ(pixmap.devicePixelRatio(), 2) << place.picture.file;
        EXPECT_EQ(pixmap.size(), QSize(place.picture.width, place.picture.height) * 2)
            << place.picture.file;
    }
    EXPECT_TRUE(pixmapOf(Picture("no such file"), 2).isNull());
}

TEST_F(Drawing, AtTwoPixelsToOneTheButtonsAreNotDoubled) {
    QWidget& button = *widgetOf(window(), player().imgButtons[2]);
    const QImage shown = pictureAt(button, 2);
    const QImage expected = pixmapOf(player().imgButtons[2].ShownPicture(), 2)
                                .toImage()
                                .convertToFormat(QImage::Format_ARGB32);
    ASSERT_EQ(shown.size(), expected.size());
    int unlike = 0;
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) {
            const QRgb pixel = expected.pixel(x, y);
            unlike += qAlpha(pixel) != 0 && shown.pixel(x, y) != pixel ? 1 : 0;
        }
    }
    EXPECT_EQ(unlike, 0);
}

} // namespace
} // namespace zvonivec
