// The real message boxes. Each test looks at the box and then closes it.

#include "platform/box_icon.h"
#include "tests/window/player_test.h"

#include <QApplication>
#include <QDialog>
#include <QImage>
#include <QPixmapCache>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextLayout>
#include <QTimer>

namespace zvonivec {
namespace {

class Boxes : public PlayerTest {
protected:
    void SetUp() override { start(); }

    /// Runs a function when a modal window appears, and closes the window afterwards.
    template<class Window>
    void whenShown(std::function<void(Window&)> look) {
        poll_.disconnect();
        QObject::connect(&poll_, &QTimer::timeout, &poll_, [this, look] {
            auto* shown = qobject_cast<Window*>(QApplication::activeModalWidget());
            if (shown != nullptr && shown->isVisible()) {
                poll_.stop();
                ++seen_;
                look(*shown);
                shown->reject();
            }
        });
        poll_.start(5);
    }
    [[nodiscard]] int seen() const { return seen_; }

private:
    QTimer poll_;
    int seen_ = 0;
};

const QTextEdit& textOf(const QDialog& box) {
    return *box.findChild<QTextEdit*>();
}

TEST_F(Boxes, AMessageBoxIsPlainTextWithOneButton) {
    ModalMessageBoxes boxes;
    boxes.setOwner(player());
    const auto showAndLook = [&](int style, BoxIcon::Kind icon) {
        whenShown<QDialog>([&](QDialog& box) {
            EXPECT_EQ(textOf(box).toPlainText(), "<b>x</b>\ny");
            EXPECT_EQ(box.windowTitle(), "Zvonivec");
            const auto* shownIcon =
                dynamic_cast<BoxIcon*>(box.findChild<QWidget*>(QStringLiteral("icon")));
            ASSERT_NE(shownIcon, nullptr);
            EXPECT_EQ(shownIcon->kind(), icon);
            const auto buttons = box.findChildren<QPushButton*>();
            ASSERT_EQ(buttons.size(), 1);
            EXPECT_EQ(buttons[0]->text().remove(u'&'), "OK");
            EXPECT_TRUE(buttons[0]->isDefault());
            EXPECT_EQ(box.parentWidget(), &window());
            EXPECT_TRUE(box.isModal());
        });
        boxes.MsgBox("<b>x</b>\r\ny", style, "Zvonivec");
    };
    showAndLook(vbCritical, BoxIcon::Kind::critical);
    showAndLook(vbInformation, BoxIcon::Kind::information);
    EXPECT_EQ(seen(), 2);
}

TEST_F(Boxes, CanBeClosedAndMovedButNotMinimised) {
    ModalMessageBoxes boxes;
    boxes.setOwner(player());
    whenShown<QDialog>([](QDialog& box) {
        const Qt::WindowFlags flags = box.windowFlags();
        EXPECT_TRUE(flags.testFlag(Qt::WindowTitleHint));
        EXPECT_TRUE(flags.testFlag(Qt::WindowCloseButtonHint));
        EXPECT_TRUE(flags.testFlag(Qt::CustomizeWindowHint)); // otherwise the toolkit adds some
        EXPECT_FALSE(flags.testFlag(Qt::WindowMinimizeButtonHint));
        EXPECT_FALSE(flags.testFlag(Qt::WindowMaximizeButtonHint));
    });
    boxes.MsgBox("x", vbInformation, "y");
    EXPECT_EQ(seen(), 1);
}

TEST_F(Boxes, LeaveNoPicturesOfWindowsBehind) {
    ModalMessageBoxes boxes;
    boxes.setOwner(player());
    const QString key = QStringLiteral("a part of a window");
    QPixmap kept;
    whenShown<QDialog>([&](QDialog& /*box*/) {
        QPixmapCache::insert(key, QPixmap(1, 1));
        EXPECT_TRUE(QPixmapCache::find(key, &kept));
    });
    boxes.MsgBox("x", vbInformation, "y");
    EXPECT_EQ(seen(), 1);
    EXPECT_FALSE(QPixmapCache::find(key, &kept));
}

TEST_F(Boxes, TheAboutBoxIsNoWiderThan420Pixels) {
    ModalMessageBoxes boxes;
    boxes.setOwner(player());
    std::string text;
    for (int i = 0; i < 60; ++i) {
        text += "slovo ";
    }
    whenShown<QDialog>([](QDialog& box) {
        EXPECT_TRUE(serveUntil([&] { return box.width() > 380; })) << box.width();
        EXPECT_LE(box.width(), 420);
        // The long text has several lines, and none is cut off.
        EXPECT_GE(textOf(box).height(), 5 * textOf(box).fontMetrics().height());
        EXPECT_FALSE(textOf(box).verticalScrollBar()->isVisible());
    });
    boxes.MsgBox(text, vbInformation, "O programu Zvonivec MP3 Player 0.0.7");
    EXPECT_EQ(seen(), 1);
}

/// Returns a picture of an icon at a number of device pixels to a logical one.
QImage iconAt(BoxIcon& icon, double ratio) {
    QImage image(icon.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    icon.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

TEST_F(Boxes, TheIconsAreDrawnInTheScreensOwnPixels) {
    for (const BoxIcon::Kind kind : {BoxIcon::Kind::information, BoxIcon::Kind::critical}) {
        BoxIcon icon(kind);
        const QImage fine = iconAt(icon, 2);
        const QImage enlarged = iconAt(icon, 1).scaled(fine.size());
        int whiteFine = 0;
        int different = 0;
        for (int y = 0; y < fine.height(); ++y) {
            for (int x = 0; x < fine.width(); ++x) {
                whiteFine += fine.pixelColor(x, y) == Qt::white ? 1 : 0;
                different += fine.pixel(x, y) != enlarged.pixel(x, y) ? 1 : 0;
            }
        }
        EXPECT_GT(whiteFine, 60); // the symbol
        EXPECT_GT(different, fine.width() * fine.height() / 4);
        EXPECT_EQ(qAlpha(fine.pixel(0, 0)), 0);
    }
}

TEST_F(Boxes, TheTimerGoesOnWhileABoxIsOpen) {
    ModalMessageBoxes boxes;
    boxes.setOwner(player());
    const float before = player().picDisplay.Left();
    whenShown<QDialog>([&](QDialog&) {
        EXPECT_TRUE(serveUntil([&] { return player().picDisplay.Left() < before - 60; }));
    });
    boxes.MsgBox("x", vbInformation, "y");
    EXPECT_EQ(seen(), 1);
}

TEST_F(Boxes, ABoxClosesWithTheProgram) {
    ModalMessageBoxes boxes;
    boxes.setOwner(player());
    bool returned = false;
    QTimer::singleShot(0, [&] {
        boxes.MsgBox("x", vbCritical, "y");
        returned = true;
    });
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (QApplication::activeModalWidget() != nullptr) {
            player().CloseApplication();
        }
    });
    poll.start(5);
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_TRUE(returned);
    EXPECT_FALSE(player().Loaded());
}

TEST_F(Boxes, ABoxHidesTheMenu) {
    ModalMessageBoxes boxes;
    boxes.setOwner(player());
    player().ShowPopupMenu();
    whenShown<QDialog>(
        [this](QDialog&) { EXPECT_TRUE(serveUntil([this] { return !popup().Visible(); })); });
    boxes.MsgBox("x", vbCritical, "y");
    EXPECT_EQ(seen(), 1);
}

TEST_F(Boxes, TheTextCanBeSelectedAndKeepsItsLinesAndTabs) {
    ModalMessageBoxes boxes;
    boxes.setOwner(player());
    whenShown<QDialog>([](QDialog& box) {
        const QTextEdit& text = textOf(box);
        EXPECT_EQ(text.toPlainText(), "E-mail:\t\ta@example.org\nHome page:\tb\n\nURL: /a b");
        EXPECT_TRUE(text.isReadOnly());
        EXPECT_TRUE(text.textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
        EXPECT_TRUE(text.textInteractionFlags().testFlag(Qt::TextSelectableByKeyboard));
        // Both texts behind tabs begin at the same place.
        const auto placeOf = [&](int block, const char* part) {
            const QTextBlock line = text.document()->findBlockByNumber(block);
            return line.layout()->lineAt(0).cursorToX(
                static_cast<int>(line.text().indexOf(QLatin1String(part))));
        };
        EXPECT_NEAR(placeOf(0, "a@"), placeOf(1, "b"), 0.5);
    });
    boxes.MsgBox("E-mail:\t\ta@example.org\r\nHome page:\tb\r\n\r\nURL: /a b", vbInformation, "y");
    EXPECT_EQ(seen(), 1);
}

TEST_F(Boxes, NoTextMakesABoxLargerThanTheScreen) {
    ModalMessageBoxes boxes;
    boxes.setOwner(player());
    std::string manyLines;
    for (int i = 0; i < 500; ++i) {
        manyLines += "line " + std::to_string(i) + "\r\n";
    }
    std::string manyWords;
    for (int i = 0; i < 5000; ++i) {
        manyWords += "word ";
    }
    const std::string texts[] = {"URL: /" + std::string(4000, 'x'), manyLines, manyWords,
                                 "URL: /" + std::string(400, 'x'), manyLines + manyWords};
    for (const std::string& text : texts) {
        whenShown<QDialog>([&](QDialog& box) {
            const QRect screen = box.screen()->availableGeometry();
            EXPECT_LE(box.width(), screen.width()) << text.substr(0, 10);
            EXPECT_LE(box.height(), screen.height()) << text.substr(0, 10);
            const QPushButton* button = box.findChild<QPushButton*>();
            ASSERT_NE(button, nullptr);
            EXPECT_TRUE(button->isVisible());
            EXPECT_TRUE(
                box.rect().contains(QRect(button->mapTo(&box, QPoint(0, 0)), button->size())));
            // The user can reach all of the text: it is no wider than its view, and scrolls down.
            const QTextEdit& shown = textOf(box);
            for (QTextBlock line = shown.document()->begin(); line.isValid(); line = line.next()) {
                for (int i = 0; i < line.layout()->lineCount(); ++i) {
                    EXPECT_LE(line.layout()->lineAt(i).naturalTextWidth(),
                              shown.viewport()->width());
                }
            }
            EXPECT_EQ(shown.document()->size().height() > shown.viewport()->height(),
                      shown.verticalScrollBar()->isVisible());
        });
        boxes.MsgBox(text, vbInformation, "y");
    }
    EXPECT_EQ(seen(), 5);
}

} // namespace
} // namespace zvonivec
