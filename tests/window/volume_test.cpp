#include "tests/window/player_test.h"

namespace zvonivec {
namespace {

class Volume : public PlayerTest {
protected:
    void SetUp() override { start(); }

    void expectVolume(int percent) {
        EXPECT_EQ(engine().settings().volume(), percent);
        EXPECT_EQ(player().imgVolume.Tag(), std::to_string(percent));
        EXPECT_EQ(player().lblStatus.Caption(), std::to_string(percent) + "% hlasitost");
    }
};

TEST_F(Volume, TheLoudspeakerStepsUpByLeftClicksAndDownByOthers) {
    click(player().imgVolume);
    expectVolume(60);
    click(player().imgVolume, Qt::RightButton);
    expectVolume(50);
    click(player().imgVolume, Qt::MiddleButton);
    expectVolume(40);
}

TEST_F(Volume, TheStatusTextDoesTheSame) {
    click(player().lblStatus);
    expectVolume(60);
    click(player().lblStatus, Qt::RightButton);
    expectVolume(50);
    click(player().lblStatus, Qt::MiddleButton);
    expectVolume(40);
    EXPECT_FALSE(player().Popup().Visible());
}

TEST_F(Volume, StaysWithinItsBounds) {
    engine().settings().setVolume(100);
    click(player().imgVolume);
    expectVolume(100);
    engine().settings().setVolume(0);
    click(player().imgVolume, Qt::RightButton);
    expectVolume(0);
}

TEST_F(Volume, ShowsTheVolumeThatTheEngineHasAccepted) {
    engine().settings().setVolume(95);
    click(player().imgVolume);
    expectVolume(100);
    engine().settings().setVolume(4);
    click(player().imgVolume, Qt::RightButton);
    expectVolume(0);
}

TEST_F(Volume, StepsTheSameAnywhereInThePicture) {
    for (const QPoint corner : {QPoint(0, 0), QPoint(9, 0), QPoint(0, 7), QPoint(9, 7)}) {
        engine().settings().setVolume(30);
        click(player().imgVolume, Qt::LeftButton, corner);
        expectVolume(40);
    }
}

TEST_F(Volume, RepaintsTheLabelAtOnce) {
    const QImage before = pictureOf(*widgetOf(window(), player().lblStatus));
    bool passed = false;
    Application::post([&] { passed = true; });
    player().imgVolume_MouseUp({.Button = 1});
    EXPECT_TRUE(passed);
    EXPECT_NE(pictureOf(*widgetOf(window(), player().lblStatus)), before);
}

} // namespace
} // namespace zvonivec
