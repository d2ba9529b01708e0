#include "tests/window/player_test.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <map>

namespace zvonivec {
namespace {

struct Place {
    const char* name;
    const char* container;
    float left, top, width, height; // twips; width 0: the control sizes itself
    const char* toolTip;
    QRect pixels; // width 0: the control sizes itself
};

const Place PLACES[] = {
    {"picBGround", "frmPlayer", 1290, 860, 2455, 220, "", {86, 57, 164, 15}},
    {"picDisplay", "picBGround", 0, 0, 2455, 220, "", {0, 0, 164, 15}},
    {"lbl_Info", "picDisplay", 0, 0, 0, 195, "", {0, 0, 0, 13}},
    {"lbl_Info_SH", "picDisplay", 15, 15, 0, 195, "", {1, 1, 0, 13}},
    {"PB", "frmPlayer", 600, 4320, 3855, 150, "", {40, 288, 257, 10}},
    {"imgVolume", "frmPlayer", 1440, 1155, 150, 120, "", {96, 77, 10, 8}},
    {"lblStatus", "frmPlayer", 1665, 1110, 0, 195, "", {111, 74, 0, 13}},
    {"imgLogo", "frmPlayer", 2295, 1845, 480, 480, "Otevřít soubor MP3", {153, 123, 32, 32}},
    {"imgDisplay_Mark", "frmPlayer", 3480, 1155, 120, 120, "Zastavit", {232, 77, 8, 8}},
    {"imgButtons_6", "frmPlayer", 4380, 510, 210, 210, "Zavřít", {292, 34, 14, 14}},
    {"imgButtons_5", "frmPlayer", 4140, 510, 210, 210, "Minimalizovat", {276, 34, 14, 14}},
    {"imgButtons_4", "frmPlayer", 3705, 2160, 465, 465, "Přetočit dopředu", {247, 144, 31, 31}},
    {"imgButtons_3", "frmPlayer", 3000, 2640, 465, 465, "Zastavit", {200, 176, 31, 31}},
    {"imgButtons_2", "frmPlayer", 2295, 3120, 465, 465, "Přehrát", {153, 208, 31, 31}},
    {"imgButtons_1", "frmPlayer", 1590, 2640, 465, 465, "Pozastavit", {106, 176, 31, 31}},
    {"imgButtons_0", "frmPlayer", 885, 2160, 465, 465, "Přetočit dozadu", {59, 144, 31, 31}},
    {"lblTime_1", "frmPlayer", 4425, 3960, 45, 195, "Délka skladby", {295, 264, 3, 13}},
    {"lblTime_0", "frmPlayer", 600, 3960, 45, 195, "Aktuální pozice přehrávání", {40, 264, 3, 13}},
};

class Layout : public PlayerTest {
protected:
    Control& control(const std::string& name) {
        std::map<std::string, Control*> all;
        frmPlayer& p = player();
        for (Control* one : std::initializer_list<Control*>{
                 &p.picBGround, &p.picDisplay, &p.lbl_Info, &p.lbl_Info_SH, &p.PB, &p.imgVolume,
                 &p.lblStatus, &p.imgLogo, &p.imgDisplay_Mark, &p.lblTime[0], &p.lblTime[1]}) {
            all[one->Name()] = one;
        }
        for (Image& button : p.imgButtons) {
            all[button.Name()] = &button;
        }
        return *all.at(name);
    }
};

TEST_F(Layout, PutsEveryControlInItsPlace) {
    for (const Place& place : PLACES) {
        SCOPED_TRACE(place.name);
        const Control& placed = control(place.name);
        EXPECT_EQ(placed.Left(), place.left);
        EXPECT_EQ(placed.Top(), place.top);
        EXPECT_EQ(placed.Height(), place.height);
        const QWidget& widget = *widgetOf(window(), placed);
        EXPECT_EQ(widget.geometry().topLeft(), place.pixels.topLeft());
        EXPECT_EQ(widget.height(), place.pixels.height());
        if (place.width > 0) {
            EXPECT_EQ(placed.Width(), place.width);
            EXPECT_EQ(widget.width(), place.pixels.width());
        }
        EXPECT_EQ(placed.ToolTipText(), place.toolTip);
        EXPECT_EQ(widget.parentWidget()->objectName(), place.container);
    }
}

TEST_F(Layout, HasTheWindowsProperties) {
    EXPECT_EQ(player().Caption(), "Zvonivec MP3 Player 0.0.7");
    EXPECT_EQ(player().Width(), 5055);
    EXPECT_EQ(player().Height(), 5040);
    EXPECT_EQ(window().size(), QSize(337, 336));
    EXPECT_EQ(window().minimumSize(), window().maximumSize());
    EXPECT_TRUE(window().windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_FALSE(window().windowIcon().isNull());
}

TEST_F(Layout, HasItsTextsAndColours) {
    EXPECT_EQ(player().lbl_Info.Caption(), "Vítejte v programu Zvonivec MP3 Player 0.0.7");
    EXPECT_EQ(player().lbl_Info.ForeColor(), rgb(255, 255, 0));
    EXPECT_EQ(player().lbl_Info_SH.Caption(), player().lbl_Info.Caption());
    EXPECT_EQ(player().lbl_Info_SH.ForeColor(), rgb(224, 224, 224));
    EXPECT_EQ(player().lblStatus.Caption(), "50% hlasitost");
    EXPECT_EQ(player().lblStatus.ForeColor(), rgb(255, 255, 128));
    EXPECT_EQ(player().lblTime[0].ForeColor(), rgb(192, 255, 192));
    EXPECT_EQ(player().lblTime[1].ForeColor(), rgb(255, 255, 192));
    EXPECT_EQ(player().picBGround.BackColor(), rgb(0, 160, 192));
    EXPECT_EQ(player().picDisplay.BackColor(), rgb(0, 160, 192));
    EXPECT_EQ(player().PB.Min(), 0);
    EXPECT_EQ(player().PB.Max(), 100);
    EXPECT_EQ(player().PB.Value(), 0);
}

TEST_F(Layout, DisablesThePlaybackButtonsAtCreation) {
    for (std::size_t i = 0; i < BUTTON_COUNT; ++i) {
        EXPECT_EQ(player().imgButtons[i].Enabled(), i >= 5) << i;
    }
}

TEST_F(Layout, TheImageListHas31PicturesOfTheirSizes) {
    for (std::size_t number = 1; number <= 31; ++number) {
        const bool small = number == 6 || number == 7 || number == 13 || number == 14 ||
                           number == 20 || number == 21;
        const bool mark = number >= 22 && number <= 26;
        const bool winding = number == 22 || number == 26;
        const Picture picture = player().imgList.ListImage(number);
        EXPECT_EQ(picture.width(), small ? 14 : winding ? 12 : mark ? 8 : 31) << number;
        EXPECT_EQ(picture.height(), small ? 14 : winding ? 6 : mark ? 8 : 31) << number;
    }
    EXPECT_FALSE(player().imgList.ListImage(0));
    EXPECT_FALSE(player().imgList.ListImage(32));
}

TEST_F(Layout, TheMarkTakesTheSizeOfItsPicture) {
    for (const std::size_t number : {22U, 23U, 24U, 25U, 26U}) {
        player().imgDisplay_Mark.setPicture(player().imgList.ListImage(number));
        const bool winding = number == 22 || number == 26;
        EXPECT_EQ(widgetOf(window(), player().imgDisplay_Mark)->geometry(),
                  winding ? QRect(232, 77, 12, 6) : QRect(232, 77, 8, 8));
    }
}

TEST_F(Layout, TheWelcomeTextIsClippedByTheDisplay) {
    start();
    EXPECT_GT(player().lbl_Info.Width(), player().picBGround.Width());
    player().Timer1.setEnabled(false);
    player().picDisplay.setLeft(0);
    const auto onScreen = [this] {
        QCoreApplication::processEvents(); // brings the painting to the screen
        return QGuiApplication::primaryScreen()->grabWindow(window().winId()).toImage();
    };
    ASSERT_TRUE(serveUntil([this] { return window().windowHandle()->isExposed(); }));
    player().picDisplay.setLeft(0);
    const QImage shown = onScreen();
    player().picDisplay.setLeft(player().picBGround.Width() + 100);
    const QImage empty = onScreen();
    const QRect viewport(86, 57, 164, 15);
    bool differs = false;
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) {
            const bool same = shown.pixel(x, y) == empty.pixel(x, y);
            differs = differs || !same;
            EXPECT_TRUE(same || viewport.contains(x, y)) << x << ' ' << y;
        }
    }
    EXPECT_TRUE(differs);
}

TEST_F(Layout, TheShadowLiesBeneathTheText) {
    start();
    player().Timer1.setEnabled(false);
    player().picDisplay.setLeft(0);
    player().lbl_Info.setCaption("████");
    player().lbl_Info_SH.setCaption("████");
    const QImage shown = pictureOf(*widgetOf(window(), player().picDisplay));
    EXPECT_EQ(shown.pixelColor(6, 6), QColor(255, 255, 0));
}

TEST_F(Layout, TheShadowStaysOutOfTheGapsBetweenStrokes) {
    start();
    player().Timer1.setEnabled(false);
    QWidget& strip = *widgetOf(window(), player().picDisplay);
    player().lbl_Info_SH.setVisible(false);
    const QImage text = pictureOf(strip);
    player().lbl_Info_SH.setVisible(true);
    player().lbl_Info.setVisible(false);
    const QImage shadow = pictureOf(strip);
    player().lbl_Info.setVisible(true);

    int shaded = 0;
    int strokes = 0;
    for (int y = 0; y + 1 < text.height(); ++y) {
        for (int x = 0; x + 1 < text.width(); ++x) {
            const auto isStroke = [&text](int column, int row) {
                return text.pixelColor(column, row) == QColor(255, 255, 0);
            };
            shaded += shadow.pixelColor(x, y) == QColor(224, 224, 224) ? 1 : 0;
            if (isStroke(x + 1, y) || isStroke(x, y + 1)) {
                ++strokes;
                EXPECT_EQ(shadow.pixelColor(x, y), QColor(0, 160, 192)) << x << ' ' << y;
            }
        }
    }
    EXPECT_GT(strokes, 100);
    EXPECT_GT(shaded, 20) << "the rest has the shadow's own colour";
}

TEST_F(Layout, TheTimesAreEmptyAndGrowWithTheirCaptions) {
    EXPECT_EQ(player().lblTime[0].Caption(), "");
    EXPECT_EQ(player().lblTime[1].Caption(), "");
    EXPECT_EQ(player().lblTime[0].Width(), 45);
    EXPECT_EQ(player().lblTime[1].Width(), 45);
    player().lblTime[0].setCaption("00:00");
    player().lblTime[1].setCaption("100:00");
    EXPECT_GT(player().lblTime[0].Width(), 300);
    EXPECT_EQ(player().lblTime[0].Left(), 600);
    EXPECT_GT(player().lblTime[1].Width(), player().lblTime[0].Width());
    EXPECT_EQ(player().lblTime[1].Left() + player().lblTime[1].Width(), 4425 + 45);
    player().lblTime[1].setCaption("");
    EXPECT_EQ(player().lblTime[1].Left(), 4425);
    EXPECT_EQ(player().lblTime[1].Width(), 45);
}

TEST_F(Layout, ShowsNoTimesAndNoBarWithoutAFile) {
    start();
    EXPECT_FALSE(player().lblTime[0].Visible());
    EXPECT_FALSE(player().lblTime[1].Visible());
    EXPECT_FALSE(player().PB.Visible());
}

TEST_F(Layout, TheBarShowsAHand) {
    const QCursor cursor = widgetOf(window(), player().PB)->cursor();
    EXPECT_EQ(cursor.pixmap().size(), QSize(32, 32));
}

} // namespace
} // namespace zvonivec
