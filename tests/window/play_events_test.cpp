#include "tests/window/player_test.h"

namespace zvonivec {
namespace {

class PlayEvents : public PlayerTest {
protected:
    void SetUp() override {
        start();
        open("a.mp3");
        player().Timer1.setEnabled(false);
        player().PB.setValue(170);
        player().lblTime[0].setCaption("02:50");
        engine().calls.clear();
    }
    void repeat(int value) { player().Popup().chkPopup[popupRepeat].setValue(value); }
};

TEST_F(PlayEvents, TheEndWithRepeatStartsAgainAndKeepsTheDisplay) {
    repeat(1);
    engine().reachEnd();
    EXPECT_EQ(engine().calls, std::vector<std::string>{"play"});
    EXPECT_EQ(engine().playState(), PlayState::playing);
    EXPECT_EQ(player().PB.Value(), 170);
    EXPECT_EQ(player().lblTime[0].Caption(), "02:50");
    EXPECT_TRUE(shows(player().imgDisplay_Mark, 24));
}

TEST_F(PlayEvents, TheDesktopHearsOfChangesAndJumps) {
    int changes = 0;
    int jumps = 0;
    player().StateChanged = [&] { ++changes; };
    player().PositionJumped = [&] { ++jumps; };
    repeat(1);
    engine().reachEnd();
    EXPECT_EQ(jumps, 1);
    player().SeekTo(20);
    EXPECT_EQ(jumps, 2);
    changes = 0;
    player().imgVolume_MouseUp({.Button = LEFT_BUTTON});
    EXPECT_EQ(changes, 1);
    repeat(0);
    EXPECT_EQ(changes, 2);
    engine().reachEnd();
    EXPECT_EQ(changes, 3);
    engine().fail();
    EXPECT_EQ(changes, 4);
    player().Timer1.Tick();
    EXPECT_EQ(changes, 4) << "time passes, nothing changes";
    EXPECT_EQ(jumps, 2);
}

TEST_F(PlayEvents, TheEndWithoutRepeatResetsTheDisplayAndKeepsTheFile) {
    repeat(0);
    engine().reachEnd();
    EXPECT_TRUE(engine().calls.empty());
    EXPECT_EQ(player().PB.Value(), 0);
    EXPECT_EQ(player().lblTime[0].Caption(), "00:00");
    EXPECT_TRUE(shows(player().imgDisplay_Mark, 25));
    EXPECT_EQ(player().imgDisplay_Mark.ToolTipText(), "Zastavit");
    EXPECT_EQ(engine().URL(), "a.mp3");
    expectLook(true);
    click(player().imgButtons[2]);
    EXPECT_EQ(engine().playState(), PlayState::playing);
}

TEST_F(PlayEvents, AnUndecidedSwitchIsOff) {
    repeat(2);
    engine().reachEnd();
    EXPECT_TRUE(engine().calls.empty());
    EXPECT_EQ(player().PB.Value(), 0);
}

TEST_F(PlayEvents, StopByTheUserDoesNotRepeat) {
    repeat(1);
    click(player().imgButtons[3]);
    EXPECT_EQ(engine().calls, std::vector<std::string>{"stop"});
    EXPECT_EQ(engine().playState(), PlayState::stopped);
    click(player().imgButtons[3]);
    EXPECT_EQ(engine().calls, (std::vector<std::string>{"stop", "stop"}));
}

TEST_F(PlayEvents, AStoppedEventThatTheUserCausedOnlyClearsTheFlag) {
    repeat(1);
    player().gUserStopped = true;
    player().WMP->PlayStateChange(PlayState::stopped);
    EXPECT_FALSE(player().gUserStopped);
    EXPECT_TRUE(engine().calls.empty());
    EXPECT_EQ(player().PB.Value(), 170);
    EXPECT_EQ(player().lblTime[0].Caption(), "02:50");
}

TEST_F(PlayEvents, OtherStatesAreIgnored) {
    player().gUserStopped = true;
    for (const PlayState state : {PlayState::paused, PlayState::playing, PlayState::mediaEnded,
                                  PlayState::transitioning, PlayState::ready}) {
        player().WMP->PlayStateChange(state);
        EXPECT_TRUE(player().gUserStopped);
    }
    EXPECT_TRUE(engine().calls.empty());
    EXPECT_EQ(player().PB.Value(), 170);
}

TEST_F(PlayEvents, AnErrorShowsTheIdleWindowAndThenTheBox) {
    boxes().During = [this] { expectLook(false); };
    engine().fail();
    ASSERT_EQ(boxes().boxes.size(), 1U);
    EXPECT_EQ(boxes().boxes[0].text, "Nastala chyba při přehrávání souboru - nelze přehrát!");
    EXPECT_EQ(boxes().boxes[0].style, 16);
    EXPECT_EQ(boxes().boxes[0].title, "Zvonivec MP3 Player 0.0.7");
    EXPECT_EQ(engine().URL(), "");
    expectLook(false);
}

} // namespace
} // namespace zvonivec
