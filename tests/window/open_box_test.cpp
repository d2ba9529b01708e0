// What happens to the player while a message box is open.

#include "controls/MsgBox.h"
#include "tests/window/input.h"
#include "tests/window/player_test.h"

#include <QApplication>
#include <QDialog>
#include <QFontMetrics>
#include <QTimer>
#include <QWindow>
#include <utility>

namespace zvonivec {
namespace {

class OpenBox : public PlayerTest {
protected:
    void SetUp() override {
        start();
        open("a.mp3");
        box_.setOwner(player());
    }

    /// Shows a box, runs a function while it is open, and closes it.
    void withBox(const std::function<void(QDialog&)>& function, const std::string& text = "x",
                 const std::string& title = "y") {
        int shown = 0;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, [&] {
            QDialog* box = openDialog();
            if (box != nullptr) {
                poll.stop();
                ++shown;
                function(*box);
                box->reject();
            }
        });
        poll.start(5);
        box_.MsgBox(text, vbInformation, title);
        EXPECT_EQ(shown, 1);
    }
    /// Returns the dialog that is shown, modal or not.
    static QDialog* openDialog() {
        const auto windows = QApplication::topLevelWidgets();
        for (QWidget* window : windows) {
            auto* dialog = qobject_cast<QDialog*>(window);
            if (dialog != nullptr && dialog->isVisible()) {
                return dialog;
            }
        }
        return nullptr;
    }
    void repeat(int value) { popup().chkPopup[popupRepeat].setValue(value); }

private:
    ModalMessageBoxes box_;
};

TEST_F(OpenBox, KeysForTheWindowDoNothing) {
    player().Timer1.setEnabled(false);
    engine().calls.clear();
    const int repeated = popup().chkPopup[popupRepeat].Value();
    withBox([this](QDialog& /*box*/) {
        QWindow& keys = *window().windowHandle();
        for (const Qt::Key letter : {Qt::Key_X, Qt::Key_C, Qt::Key_V, Qt::Key_Up, Qt::Key_Right,
                                     Qt::Key_F1, Qt::Key_Menu, Qt::Key_Tab}) {
            input::key(keys, letter);
        }
        input::key(keys, Qt::Key_O, Qt::ControlModifier);
        input::key(keys, Qt::Key_R, Qt::ControlModifier);
    });
    EXPECT_TRUE(engine().calls.empty());
    EXPECT_EQ(engine().settings().volume(), 50);
    EXPECT_EQ(dialog().shown, 1);
    EXPECT_TRUE(boxes().boxes.empty());
    EXPECT_FALSE(popup().Visible());
    EXPECT_EQ(popup().chkPopup[popupRepeat].Value(), repeated);
}

TEST_F(OpenBox, ATrackThatEndsUnderItResetsTheDisplay) {
    repeat(0);
    engine().positionString = "02:59";
    engine().position = 179;
    withBox([this](QDialog& box) {
        // The timer shows the position meanwhile.
        EXPECT_TRUE(serveUntil([this] { return player().lblTime[0].Caption() == "02:59"; }));
        engine().reachEnd();
        EXPECT_EQ(player().lblTime[0].Caption(), "00:00");
        EXPECT_EQ(player().PB.Value(), 0);
        EXPECT_TRUE(shows(player().imgDisplay_Mark, 25));
        EXPECT_TRUE(box.isVisible());
    });
    EXPECT_EQ(engine().playState(), PlayState::stopped);
    EXPECT_EQ(engine().URL(), "a.mp3");
    expectLook(true);
}

TEST_F(OpenBox, ATrackThatEndsUnderItIsRepeated) {
    repeat(1);
    withBox([this](QDialog& box) {
        engine().calls.clear();
        engine().reachEnd();
        EXPECT_EQ(engine().calls, std::vector<std::string>{"play"});
        EXPECT_TRUE(box.isVisible());
    });
    EXPECT_EQ(engine().playState(), PlayState::playing);
    EXPECT_TRUE(shows(player().imgDisplay_Mark, 24));
}

TEST_F(OpenBox, ARightClickOnThePlayerOpensNoMenu) {
    QWindow& handle = *window().windowHandle();
    const auto rightClick = [&] {
        input::press(handle, Qt::RightButton, {30, 200});
        input::release(handle, Qt::RightButton, {30, 200});
    };
    withBox([&](QDialog& box) {
        rightClick();
        EXPECT_FALSE(popup().Visible());
        EXPECT_TRUE(box.isVisible());
    });
    rightClick(); // the same click without the box
    EXPECT_TRUE(popup().Visible());
}

TEST_F(OpenBox, NoOtherClickOnThePlayerCounts) {
    withBox([this](QDialog&) {
        engine().calls.clear();
        click(player().imgButtons[3]);
        click(player().imgVolume);
        click(player().PB);
        click(player().imgLogo);
    });
    EXPECT_TRUE(engine().calls.empty());
    EXPECT_EQ(engine().settings().volume(), 50);
    EXPECT_EQ(dialog().shown, 1); // by open
}

TEST_F(OpenBox, AHeldButtonIsLetGoWithoutItsCommand) {
    for (const std::size_t index : {3U, 6U}) {
        engine().calls.clear();
        press(player().imgButtons[index]);
        ASSERT_TRUE(shows(player().imgButtons[index], index + 15));
        withBox([&](QDialog&) {
            EXPECT_TRUE(serveUntil([&] { return shows(player().imgButtons[index], index + 1); }));
        });
        EXPECT_FALSE(player().gButtonDown);
        EXPECT_FALSE(player().gClickArmed);
        release(player().imgButtons[index]); // a release that comes all the same
        EXPECT_TRUE(engine().calls.empty());
        EXPECT_TRUE(player().Loaded());
    }
}

TEST_F(OpenBox, AHeldLogoIsLetGoWithoutADialog) {
    press(player().imgLogo);
    ASSERT_TRUE(player().gClickArmed);
    withBox([this](QDialog&) { EXPECT_FALSE(player().gClickArmed); });
    release(player().imgLogo);
    EXPECT_EQ(dialog().shown, 1); // by open
}

TEST_F(OpenBox, TheTimerGoesOnUnderABoxThatATicksMessagePassHasOpened) {
    const auto tick = player().Timer1.Tick;
    bool opened = false;
    player().Timer1.Tick = [&] {
        if (!std::exchange(opened, true)) {
            Application::post([&] {
                withBox([this](QDialog&) {
                    const float before = player().picDisplay.Left();
                    EXPECT_TRUE(
                        serveUntil([&] { return player().picDisplay.Left() < before - 60; }));
                });
            });
        }
        tick();
    };
    EXPECT_TRUE(serveUntil([&] { return opened; }));
    player().Timer1.Tick = tick;
}

TEST_F(OpenBox, IsWideEnoughForItsTitle) {
    const std::string title = "Zvonivec MP3 Player 0.0.7 - vlastnosti souboru MP3";
    withBox(
        [&](QDialog& box) {
            const int needed =
                QFontMetrics(box.font()).horizontalAdvance(QString::fromStdString(title));
            EXPECT_TRUE(serveUntil([&] { return box.width() > needed; })) << box.width();
        },
        "x", title);
}

} // namespace
} // namespace zvonivec
