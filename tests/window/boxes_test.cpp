// The real message boxes. Each test looks at the box and then closes it.

#include "tests/window/player_test.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
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
    const auto showAndLook = [&](int style, QStyle::StandardPixmap icon) {
        whenShown<QDialog>([&](QDialog& box) {
            EXPECT_EQ(textOf(box).toPlainText(), "<b>x</b>\ny");
            EXPECT_EQ(box.windowTitle(), "Zvonivec");
            const auto* shownIcon = box.findChild<QLabel*>(QStringLiteral("icon"));
            ASSERT_NE(shownIcon, nullptr);
            const QPixmap pixmap = shownIcon->pixmap();
            EXPECT_FALSE(pixmap.isNull());
            EXPECT_EQ(pixmap.toImage(),
                      box.style()->standardIcon(icon).pixmap(pixmap.size()).toImage());
            const auto buttons = box.findChildren<QPushButton*>();
            ASSERT_EQ(buttons.size(), 1);
            EXPECT_EQ(buttons[0]->text().remove(u'&'), "OK");
            EXPECT_TRUE(buttons[0]->isDefault());
            EXPECT_EQ(box.parentWidget(), &window());
            EXPECT_TRUE(box.isModal());
        });
        boxes.MsgBox("<b>x</b>\r\ny", style, "Zvonivec");
    };
    showAndLook(vbCritical, QStyle::SP_MessageBoxCritical);
    showAndLook(vbInformation, QStyle::SP_MessageBoxInformation);
    EXPECT_EQ(seen(), 2);
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
