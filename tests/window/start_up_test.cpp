#include "tests/window/player_test.h"

#include <QFile>
#include <QRegion>
#include <fstream>

namespace zvonivec {
namespace {

using StartUp = PlayerTest;

TEST_F(StartUp, LeavesTheProgramIdle) {
    start();
    EXPECT_TRUE(player().Visible());
    EXPECT_TRUE(player().Timer1.Enabled());
    EXPECT_EQ(player().gHoverIndex, NO_BUTTON);
    EXPECT_FALSE(player().gClickArmed);
    EXPECT_FALSE(player().gButtonDown);
    expectLook(false);
    for (const std::size_t i : {5U, 6U}) {
        EXPECT_TRUE(player().imgButtons[i].Enabled());
        EXPECT_TRUE(shows(player().imgButtons[i], i + 1));
    }
    EXPECT_TRUE(shows(player().imgDisplay_Mark, 25));
}

TEST_F(StartUp, WithoutSettingsTakesTheDefaults) {
    start();
    EXPECT_TRUE(serveUntil([this] { return isCentred(); }));
    EXPECT_EQ(player().Popup().chkPopup[popupOnTop].Value(), 0);
    EXPECT_EQ(player().Popup().chkPopup[popupRepeat].Value(), 1);
    EXPECT_EQ(engine().settings().volume(), 50);
    EXPECT_EQ(player().imgVolume.Tag(), "50");
    EXPECT_EQ(player().lblStatus.Caption(), "50% hlasitost");
}

TEST_F(StartUp, LoadsThePopupHidden) {
    start();
    EXPECT_TRUE(player().Popup().Loaded());
    EXPECT_FALSE(player().Popup().Visible());
    EXPECT_FALSE(QWidget::find(player().Popup().hWnd())->isVisible());
}

TEST_F(StartUp, ConfiguresTheEngine) {
    start();
    EXPECT_FALSE(engine().autoStartOn);
    EXPECT_FALSE(engine().contextMenuOn);
    EXPECT_EQ(engine().URL(), "");
}

TEST_F(StartUp, ShowsTheWindowBeforeTheTimerCanTick) {
    // The value that is stored too: reading it raises no click and no message pass.
    popup().chkPopup[popupRepeat].setValue(1);
    bool asked = false;
    Application::post([&] {
        // Runs in the message pass just before the window is shown.
        asked = true;
        EXPECT_FALSE(player().Visible());
        EXPECT_FALSE(player().Timer1.Enabled());
        EXPECT_FALSE(outlineOf(window()).isEmpty());
        EXPECT_TRUE(shows(player().imgButtons[0], 27));
    });
    player().Timer1.Tick = [this] { EXPECT_TRUE(player().Visible()); };
    start();
    EXPECT_TRUE(asked);
    EXPECT_TRUE(player().Timer1.Enabled());
}

TEST_F(StartUp, ATimerTickMovesTheStrip) {
    start();
    const float before = player().picDisplay.Left();
    EXPECT_TRUE(serveUntil([&] { return player().picDisplay.Left() <= before - 30; }));
}

TEST_F(StartUp, PutsTheStripJustBeyondTheDisplay) {
    player().Form_Load();
    EXPECT_EQ(player().picDisplay.Left(), 2455 + 100);
    EXPECT_EQ(player().picDisplay.Width(), player().lbl_Info.Width() + 20);
}

TEST_F(StartUp, ClosingDuringTheStartEndsTheProgram) {
    Application::post([this] { player().CloseApplication(); });
    player().Form_Load();
    EXPECT_FALSE(player().Loaded());
    EXPECT_FALSE(player().Visible());
    EXPECT_FALSE(player().Timer1.Enabled());
}

TEST_F(StartUp, TheDialogStartsAtTheProgramsDrive) {
    start();
    EXPECT_EQ(dialog().InitDir, programFolder().substr(0, 2));
}

class StartFolder : public testing::TestWithParam<std::pair<const char*, const char*>> {};

TEST_P(StartFolder, IsTheFirstTwoCharactersOfTheProgramsFolder) {
    auto dialog = std::make_unique<FakeDialog>();
    const FakeDialog& asked = *dialog;
    frmPlayer player({.engine = std::make_unique<support::FakeEngine>(),
                      .dialog = std::move(dialog),
                      .boxes = std::make_unique<FakeBoxes>(),
                      .programFolder = GetParam().first});
    player.Form_Load();
    EXPECT_EQ(asked.InitDir, GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(Folders, StartFolder,
                         testing::Values(std::pair{"C:\\", "C:"}, std::pair{"C:\\Hry", "C:"},
                                         std::pair{"/", "/"}, std::pair{"", ""},
                                         std::pair{"/žluť", "/ž"}));

TEST_F(StartUp, TheOutlineHasExactlyTheExpectedPixels) {
    start();
    QRegion expected;
    std::ifstream file(TEST_DATA "/outline_rects.txt");
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    while (file >> left >> top >> right >> bottom) {
        expected += QRect(QPoint(left, top), QPoint(right - 1, bottom - 1));
    }
    long pixels = 0;
    for (const QRect& rectangle : expected) {
        pixels += long{rectangle.width()} * rectangle.height();
    }
    EXPECT_EQ(pixels, 110210);
    EXPECT_EQ(outlineOf(window()), expected);
}

} // namespace
} // namespace zvonivec
