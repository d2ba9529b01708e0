#include "tests/window/player_test.h"

namespace zvonivec {
namespace {

class Position : public PlayerTest {
protected:
    void SetUp() override {
        start();
        player().Timer1.setEnabled(false);
    }
    void openTrack(double duration) {
        engine().tracks["a.mp3"].duration = duration;
        open("a.mp3");
        player().Timer1.setEnabled(false);
    }
};

TEST_F(Position, TheStripMovesTwoPixelsATick) {
    player().picDisplay.setLeft(900);
    player().Timer1.Tick();
    EXPECT_EQ(player().picDisplay.Left(), 870);
}

TEST_F(Position, TheStripReturnsAfterItHasLeft) {
    const float width = player().picDisplay.Width();
    player().picDisplay.setLeft(-width + 30);
    player().Timer1.Tick();
    EXPECT_EQ(player().picDisplay.Left(), -width); // its last pixel has just left the display
    player().Timer1.Tick();
    EXPECT_EQ(player().picDisplay.Left(), 2455 + 100);
}

TEST_F(Position, TheWelcomeTextKeepsScrollingWhileIdle) {
    player().Timer1.setEnabled(true);
    player().picDisplay.setLeft(-player().picDisplay.Width() + 45);
    EXPECT_TRUE(serveUntil([this] { return player().picDisplay.Left() > 2000; }));
    EXPECT_TRUE(serveUntil([this] { return player().picDisplay.Left() < 2000; }));
}

TEST_F(Position, ThePlayingTimeAndTheBarFollowTheEngine) {
    openTrack(180);
    engine().position = 61.5;
    engine().positionString = "01:01";
    player().Timer1.Tick();
    EXPECT_EQ(player().lblTime[0].Caption(), "01:01");
    EXPECT_EQ(player().PB.Value(), 61.5F);
}

TEST_F(Position, ALengthThatComesLateMovesTheEndOfTheBar) {
    openTrack(100);
    engine().position = 130;
    player().Timer1.Tick();
    EXPECT_EQ(player().PB.Max(), 100);
    EXPECT_EQ(player().PB.Value(), 100) << "the bar is full until the length is known";
    engine().tracks["a.mp3"].duration = 200;
    engine().tracks["a.mp3"].durationString = "03:20";
    engine().learn();
    player().Timer1.Tick();
    EXPECT_EQ(player().PB.Max(), 200);
    EXPECT_EQ(player().PB.Value(), 130);
    EXPECT_EQ(player().lblTime[1].Caption(), "03:20");
}

TEST_F(Position, WhilePausedOnlyTheStripMoves) {
    openTrack(180);
    engine().position = 61.5;
    engine().positionString = "01:01";
    player().Timer1.Tick();
    click(player().imgButtons[1]);
    engine().position = 99;
    engine().positionString = "01:39";
    const float left = player().picDisplay.Left();
    player().Timer1.Tick();
    EXPECT_EQ(player().lblTime[0].Caption(), "01:01");
    EXPECT_EQ(player().PB.Value(), 61.5F);
    EXPECT_EQ(player().picDisplay.Left(), left - 30);
}

TEST_F(Position, AfterStopATickKeepsTheDisplay) {
    openTrack(180);
    click(player().imgButtons[4]);
    engine().positionString = "00:00";
    player().Timer1.Tick();
    EXPECT_EQ(player().lblTime[0].Caption(), "03:00");
    EXPECT_EQ(player().PB.Value(), player().PB.Max());
}

TEST_F(Position, TheToolTipIsTheTimeUnderThePointer) {
    openTrack(257); // a second is a pixel
    moveOver(player().PB, {100, 5});
    EXPECT_EQ(player().PB.ToolTipText(), "01:43"); // (1500 + 40) / 38.55 * 2.57 = 102.67
    moveOver(player().PB, {0, 5});
    EXPECT_EQ(player().PB.ToolTipText(), "00:03");
    press(player().PB, Qt::RightButton, {10, 5});
    moveOver(player().PB, {20, 5});
    EXPECT_EQ(player().PB.ToolTipText(), "00:23");
    release(player().PB, Qt::RightButton, {20, 5});
}

TEST_F(Position, WithoutAFileTheToolTipStays) {
    openTrack(257);
    moveOver(player().PB, {100, 5});
    player().ShowPlayback(false);
    player().PB.MouseMove({.X = 500});
    EXPECT_EQ(player().PB.ToolTipText(), "01:43");
}

TEST_F(Position, AReleaseOfAnyButtonOnTheBarSeeks) {
    openTrack(257);
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
        engine().calls.clear();
        engine().positionString = "01:43";
        click(player().PB, button, {100, 5});
        ASSERT_EQ(engine().calls.size(), 1U);
        EXPECT_NEAR(std::stod(engine().calls[0].substr(5)), 1550 / 38.55 * 2.57, 1e-4);
        EXPECT_EQ(player().lblTime[0].Caption(), "01:43");
        EXPECT_EQ(player().PB.Value(), static_cast<float>(engine().position));
    }
}

TEST_F(Position, AReleaseOutsideTheBarSeeksOutsideTheTrack) {
    openTrack(257);
    press(player().PB, Qt::LeftButton, {10, 5});
    release(player().PB, Qt::LeftButton, {-20, 5});
    EXPECT_NEAR(engine().position, -250 / 38.55 * 2.57, 1e-4);
    EXPECT_EQ(player().PB.Value(), 0);
    press(player().PB, Qt::LeftButton, {10, 5});
    release(player().PB, Qt::LeftButton, {280, 5});
    EXPECT_NEAR(engine().position, 4250 / 38.55 * 2.57, 1e-4);
}

TEST_F(Position, ATimerThatIsEnabledAgainMovesTheStrip) {
    openTrack(180);
    player().Timer1.setEnabled(true);
    const float left = player().picDisplay.Left();
    EXPECT_TRUE(serveUntil([&] { return player().picDisplay.Left() < left - 90; }));
}

} // namespace
} // namespace zvonivec
