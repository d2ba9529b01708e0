#include "tests/window/player_test.h"

namespace zvonivec {
namespace {

class ButtonStrip : public PlayerTest {
protected:
    void SetUp() override {
        start();
        open("a.mp3");
        player().Timer1.setEnabled(false);
        player().PB.setValue(30);
        player().lblTime[0].setCaption("00:30");
        engine().calls.clear();
        expectLook(true);
    }

    Image& button(std::size_t index) { return player().imgButtons[index]; }
    /// Whether the mark and its tooltip belong to a button.
    bool marks(std::size_t index) {
        return shows(player().imgDisplay_Mark, index + 22) &&
               player().imgDisplay_Mark.ToolTipText() == button(index).ToolTipText();
    }
};

TEST_F(ButtonStrip, ShowsNormalHoverPressedAndNormalAgain) {
    for (std::size_t i = 0; i < 5; ++i) {
        SCOPED_TRACE(i);
        moveOverBody();
        EXPECT_TRUE(shows(button(i), i + 1));
        moveOver(button(i));
        EXPECT_TRUE(shows(button(i), i + 8));
        EXPECT_EQ(player().gHoverIndex, i);
        press(button(i));
        EXPECT_TRUE(shows(button(i), i + 15));
        EXPECT_TRUE(player().gButtonDown);
        EXPECT_TRUE(player().gClickArmed);
        release(button(i));
        EXPECT_TRUE(shows(button(i), i + 1));
        EXPECT_FALSE(player().gButtonDown);
        EXPECT_FALSE(player().gClickArmed);
        moveOver(button(i), {4, 4});
        EXPECT_TRUE(shows(button(i), i + 8));
    }
}

TEST_F(ButtonStrip, TheTilesHaveTheirPicturesToo) {
    for (const std::size_t i : {5U, 6U}) {
        SCOPED_TRACE(i);
        moveOver(button(i));
        EXPECT_TRUE(shows(button(i), i + 8));
        press(button(i));
        EXPECT_TRUE(shows(button(i), i + 15));
        player().gClickArmed = false; // so that the release doesn't end the program
        release(button(i));
        moveOverBody();
    }
}

TEST_F(ButtonStrip, StopAndRewindAreOneCommandWithTwoMarks) {
    for (const std::size_t i : {0U, 3U}) {
        SCOPED_TRACE(i);
        player().PB.setValue(30);
        player().lblTime[0].setCaption("00:30");
        engine().calls.clear();
        bool flagAtStop = false;
        engine().During = [&](const std::string& call) {
            flagAtStop = flagAtStop || (call == "stop" && player().gUserStopped);
        };
        click(button(i));
        EXPECT_EQ(engine().calls, std::vector<std::string>{"stop"});
        EXPECT_TRUE(flagAtStop);
        EXPECT_FALSE(player().gUserStopped);
        EXPECT_EQ(player().PB.Value(), 0);
        EXPECT_EQ(player().lblTime[0].Caption(), "00:00");
        EXPECT_TRUE(marks(i));
    }
}

TEST_F(ButtonStrip, PauseTwiceDoesNotResume) {
    click(button(1));
    EXPECT_EQ(engine().playState(), PlayState::paused);
    EXPECT_TRUE(marks(1));
    click(button(1));
    EXPECT_EQ(engine().calls, (std::vector<std::string>{"pause", "pause"}));
    EXPECT_EQ(engine().playState(), PlayState::paused);
    EXPECT_EQ(player().PB.Value(), 30);
}

TEST_F(ButtonStrip, PlayResumesAfterPause) {
    click(button(1));
    click(button(2));
    EXPECT_EQ(engine().calls, (std::vector<std::string>{"pause", "play"}));
    EXPECT_EQ(engine().playState(), PlayState::playing);
    EXPECT_EQ(player().PB.Value(), 30);
    EXPECT_TRUE(marks(2));
}

TEST_F(ButtonStrip, FastForwardFillsTheBarAndStops) {
    click(button(4));
    EXPECT_EQ(engine().calls, std::vector<std::string>{"stop"});
    EXPECT_EQ(player().PB.Value(), player().PB.Max());
    EXPECT_EQ(player().lblTime[0].Caption(), "03:00");
    EXPECT_TRUE(marks(4));
}

TEST_F(ButtonStrip, PlayEmptiesAFullBarFirst) {
    click(button(4));
    engine().During = [this](const std::string& call) {
        if (call == "play") {
            EXPECT_EQ(player().PB.Value(), 0);
        }
    };
    click(button(2));
    EXPECT_EQ(engine().count("play"), 1);
    EXPECT_EQ(player().PB.Value(), 0);
}

TEST_F(ButtonStrip, OnlyALeftPressArms) {
    for (const Qt::MouseButton other : {Qt::RightButton, Qt::MiddleButton}) {
        moveOver(button(3));
        press(button(3), other);
        EXPECT_TRUE(shows(button(3), 3 + 8));
        EXPECT_FALSE(player().gClickArmed);
        EXPECT_FALSE(player().gButtonDown);
        release(button(3), other);
        EXPECT_TRUE(engine().calls.empty());
    }
}

TEST_F(ButtonStrip, TheCommandFiresWhereverThePointerIsAtTheRelease) {
    press(button(3));
    moveOver(button(0), {5, 5});
    EXPECT_TRUE(shows(button(0), 1));
    release(button(3), Qt::LeftButton, {-100, -90});
    EXPECT_EQ(engine().calls, std::vector<std::string>{"stop"});
    EXPECT_TRUE(shows(button(3), 3 + 1));
    EXPECT_TRUE(marks(3));
}

TEST_F(ButtonStrip, HoldingAButtonKeepsAllPictures) {
    moveOver(button(1));
    ASSERT_EQ(player().gHoverIndex, 1);
    press(button(1));
    moveOver(button(0), {5, 5});
    moveOverBody();
    // Called directly, because a captured pointer sends the handlers nothing.
    player().imgButtons[0].MouseMove({});
    player().MouseMove({});
    EXPECT_EQ(player().gHoverIndex, 1);
    EXPECT_TRUE(shows(button(0), 1));
    EXPECT_TRUE(shows(button(1), 1 + 15));
    release(button(1));
}

TEST_F(ButtonStrip, HoverStaysUntilThePointerIsOverTheBody) {
    moveOver(button(2));
    moveOver(player().imgLogo);
    moveOver(player().lblStatus);
    EXPECT_TRUE(shows(button(2), 2 + 8));
    EXPECT_EQ(player().gHoverIndex, 2);
    moveOverBody();
    EXPECT_TRUE(shows(button(2), 2 + 1));
    EXPECT_EQ(player().gHoverIndex, NO_BUTTON);
}

TEST_F(ButtonStrip, MovingFromButtonToButtonLeavesTheFirstAlone) {
    moveOver(button(5));
    moveOver(button(6));
    EXPECT_TRUE(shows(button(5), 5 + 8));
    EXPECT_TRUE(shows(button(6), 6 + 8));
    EXPECT_EQ(player().gHoverIndex, 6);
    moveOverBody();
    EXPECT_TRUE(shows(button(5), 5 + 8));
    EXPECT_TRUE(shows(button(6), 6 + 1));
}

TEST_F(ButtonStrip, MinimiseAndCloseLeaveTheMark) {
    click(button(1));
    ASSERT_TRUE(marks(1));
    click(button(5));
    EXPECT_TRUE(marks(1));
    EXPECT_TRUE(serveUntil([this] { // the system has done it, and the toolkit knows
        return player().WindowState() == Form::WindowState::minimised && window().isMinimized();
    }));
    player().setWindowState(Form::WindowState::normal);
    EXPECT_TRUE(serveUntil([this] {
        return player().WindowState() == Form::WindowState::normal && window().isVisible();
    }));
    click(button(6));
    EXPECT_TRUE(marks(1));
    EXPECT_FALSE(player().Loaded());
    EXPECT_FALSE(player().Popup().Loaded());
}

TEST_F(ButtonStrip, ADisabledButtonDoesNothing) {
    player().ShowPlayback(false);
    engine().calls.clear();
    const Picture mark = player().imgDisplay_Mark.ShownPicture();
    for (std::size_t i = 0; i < 5; ++i) {
        moveOver(button(i));
        click(button(i));
        EXPECT_TRUE(shows(button(i), i + 27)) << i;
    }
    EXPECT_TRUE(engine().calls.empty());
    EXPECT_EQ(player().gHoverIndex, NO_BUTTON);
    EXPECT_FALSE(player().gClickArmed);
    EXPECT_TRUE(player().imgDisplay_Mark.ShownPicture() == mark);
}

TEST_F(ButtonStrip, AButtonDisabledWhileHeldDoesNothingOnRelease) {
    press(button(3));
    player().ShowPlayback(false);
    engine().calls.clear();
    release(button(3));
    EXPECT_TRUE(engine().calls.empty());
    EXPECT_FALSE(player().gButtonDown);
    EXPECT_FALSE(player().gClickArmed);
    expectLook(false);
}

TEST_F(ButtonStrip, AReleaseActsOnlyWhenArmed) {
    player().gClickArmed = false;
    player().imgButtons_MouseUp(3, {.Button = 1});
    EXPECT_TRUE(engine().calls.empty());
    player().gClickArmed = true;
    player().imgButtons_MouseUp(3, {.Button = 2});
    EXPECT_TRUE(engine().calls.empty());
    EXPECT_TRUE(player().gClickArmed);
    player().imgButtons_MouseUp(3, {.Button = 1});
    EXPECT_EQ(engine().calls, std::vector<std::string>{"stop"});
}

TEST_F(ButtonStrip, AnIndexOutsideTheStripCarriesOutNothing) {
    for (const std::int16_t index : {std::int16_t{-1}, std::int16_t{7}, std::int16_t{10}}) {
        player().gClickArmed = true;
        player().gButtonDown = true;
        player().imgButtons_MouseUp(index, {.Button = 1});
        EXPECT_FALSE(player().gClickArmed);
        EXPECT_FALSE(player().gButtonDown);
    }
    EXPECT_TRUE(engine().calls.empty());
    EXPECT_TRUE(player().Loaded());
}

// --- The logo ---------------------------------------------------------------------------------

TEST_F(ButtonStrip, ALeftClickOnTheLogoOpensAFile) {
    click(player().imgLogo);
    EXPECT_EQ(dialog().shown, 2);
    EXPECT_FALSE(player().gClickArmed);
}

TEST_F(ButtonStrip, OtherButtonsArmTheLogoButOpenNothing) {
    click(player().imgLogo, Qt::RightButton);
    click(player().imgLogo, Qt::MiddleButton);
    EXPECT_EQ(dialog().shown, 1);
    EXPECT_TRUE(player().gClickArmed);
    // A left release without a left press of its own uses the state that the right press left
    // armed.
    player().imgLogo.MouseUp({.Button = 1});
    EXPECT_EQ(dialog().shown, 2);
    EXPECT_FALSE(player().gClickArmed);
    player().imgLogo.MouseUp({.Button = 1});
    EXPECT_EQ(dialog().shown, 2);
}

TEST_F(ButtonStrip, TheThumbButtonsOfAMouseDoNothingAnywhere) {
    engine().calls.clear();
    const int volume = engine().settings().volume();
    const Control* const all[] = {
        &player(),    &player().picBGround, &player().imgVolume,    &player().lblStatus,
        &player().PB, &player().imgLogo,    &player().imgButtons[3]};
    for (const Control* control : all) {
        for (const auto button : {Qt::BackButton, Qt::ForwardButton}) {
            click(*control, button);
            EXPECT_FALSE(player().gClickArmed) << control->Name();
        }
    }
    EXPECT_TRUE(engine().calls.empty());
    EXPECT_EQ(engine().settings().volume(), volume);
    click(player().imgVolume);
    EXPECT_EQ(engine().settings().volume(), volume + 10);
}

} // namespace
} // namespace zvonivec
