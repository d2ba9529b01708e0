// Every way to end the program saves the settings.
#include "tests/wine/wine_test.h"

namespace support {

namespace {

class EndingTest : public WindowsTest {
protected:
    EndingTest() : WindowsTest("[General]\r\nLeft=4500\r\nTop=2250\r\n") {}

    /// Makes a change that isn't saved yet.
    void change() {
        ASSERT_TRUE(becomesPlacedAt({300, 150}));
        choose(menu::LOUDER);
        ASSERT_TRUE(waitUntilMenuIsGone());
        ASSERT_EQ(settings(), "[General]\r\nLeft=4500\r\nTop=2250\r\n");
    }
    void expectSaved() {
        EXPECT_TRUE(becomesGone());
        expectSettings();
    }
    /// Ends the session. The process may be killed as soon as it has answered.
    void endSession() {
        EXPECT_EQ(runInSession({"wineboot", "-e"}), 0);
        EXPECT_TRUE(player_->process().waitForExit());
        expectSettings();
    }

private:
    void expectSettings() {
        EXPECT_EQ(settings(),
                  "[General]\r\nLeft=4500\r\nTop=2250\r\nOnTop=0\r\nRepeat=1\r\nVolume=60\r\n");
    }
};

TEST_F(EndingTest, TheCloseButton) {
    change();
    DesktopTest::click(player::close);
    expectSaved();
}

TEST_F(EndingTest, TheMenu) {
    change();
    choose(menu::QUIT);
    expectSaved();
}

TEST_F(EndingTest, TheTaskbar) {
    change();
    player_->window().requestClose();
    expectSaved();
}

TEST_F(EndingTest, TheTaskManager) {
    change();
    EXPECT_EQ(runInSession({"wine", "taskkill", "/im", "zvonivec.exe"}), 0);
    expectSaved();
}

TEST_F(EndingTest, TheEndOfTheSession) {
    change();
    endSession();
}

TEST_F(EndingTest, TheEndOfTheSessionWithTheMenuOpen) {
    change();
    openMenu();
    endSession();
}

TEST_F(EndingTest, TheEndOfTheSessionWithABoxOpen) {
    change();
    choose(menu::ABOUT);
    ASSERT_TRUE(waitForTitle(std::string("O programu ") + player::TITLE));
    endSession();
}

TEST_F(EndingTest, TheEndOfTheSessionWithTheDialogOpen) {
    change();
    DesktopTest::click(player::LOGO.middle());
    ASSERT_TRUE(waitForDialog());
    endSession();
}

} // namespace

} // namespace support
