// MP3.ini next to zvonivec.exe.
#include "tests/wine/wine_test.h"

#include <filesystem>

namespace support {

namespace {

TEST_F(WindowsTest, TheFirstRunCreatesTheSettingsFile) {
    EXPECT_FALSE(std::filesystem::exists(settingsPath()));
    closePlayer();
    EXPECT_EQ(settings(),
              "[General]\r\nLeft=7080\r\nTop=3480\r\nOnTop=0\r\nRepeat=1\r\nVolume=50\r\n");
    expectNothingElseWritten();
}

TEST_F(WindowsTest, NothingElseIsWrittenAfterTheFileDialog) {
    const std::string file = folder_.file("noise.mp3");
    ASSERT_TRUE(encodeNoise(file, 20, {"-b", "128"}));
    DesktopTest::click(player::LOGO.middle());
    openInDialog(file);
    ASSERT_TRUE(waitUntil([&] { return player_->showsPlayingLook(); }));
    closePlayer();
    EXPECT_TRUE(std::filesystem::exists(settingsPath()));
    expectNothingElseWritten();
}

class KeptSettings : public WindowsTest {
protected:
    static constexpr const char* KEPT = "; mine\r\n[Other]\r\nLeft=1\r\n[General]\r\nLeft=3000\r\n"
                                        "Top=1500\r\nOnTop=1\r\nRepeat=0\r\nVolume=80\r\n";
    KeptSettings() : WindowsTest(KEPT) {}
};

TEST_F(KeptSettings, AreReadAtTheStart) {
    EXPECT_TRUE(becomesPlacedAt({200, 100}));
    EXPECT_TRUE(waitUntil([&] { return player_->window().hasState("_NET_WM_STATE_ABOVE"); }));
    closePlayer();
    EXPECT_EQ(settings(), KEPT);
}

TEST_F(KeptSettings, AreChangedOneByOne) {
    ASSERT_TRUE(becomesPlacedAt({200, 100}));
    choose(menu::ON_TOP);
    ASSERT_TRUE(waitUntilMenuIsGone());
    choose(menu::REPEAT);
    ASSERT_TRUE(waitUntilMenuIsGone());
    choose(menu::LOUDER);
    ASSERT_TRUE(waitUntilMenuIsGone());
    closePlayer();
    EXPECT_EQ(settings(), "; mine\r\n[Other]\r\nLeft=1\r\n[General]\r\nLeft=3000\r\n"
                          "Top=1500\r\nOnTop=0\r\nRepeat=1\r\nVolume=90\r\n");
}

} // namespace

} // namespace support
