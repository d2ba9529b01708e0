// The player in other kinds of sessions.
#include "tests/desktop/desktop_test.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <string_view>

namespace support {

namespace {

class SessionTest : public DesktopTest {
protected:
    /// Returns environment() with some names changed.
    [[nodiscard]] Process::Environment with(const Process::Environment& changes) const {
        Process::Environment all = environment();
        all.insert(all.end(), changes.begin(), changes.end());
        return all;
    }

    /// Changes the settings of the desktop for all programs that are started later.
    void setDesktopResources(std::string_view text) {
        XChangeProperty(display_.connection(), DefaultRootWindow(display_.connection()),
                        XA_RESOURCE_MANAGER, XA_STRING, 8, PropModeReplace,
                        reinterpret_cast<const unsigned char*>(text.data()),
                        static_cast<int>(text.size()));
        XSync(display_.connection(), False);
    }
};

TEST_F(SessionTest, UnderWaylandItIsAWindowOfTheXServer) {
    Player second(display_, folder_.file("second"),
                  with({{"WAYLAND_DISPLAY", "wayland-0"},
                        {"XDG_SESSION_TYPE", "wayland"},
                        {"QT_QPA_PLATFORM", "wayland"}}));
    ASSERT_TRUE(second.waitUntilShown());
    EXPECT_EQ(second.window().place().width, player::WIDTH);
    EXPECT_TRUE(waitUntil([&] { return second.showsIdleLook(); }));
}

TEST_F(SessionTest, WithoutAnyDisplayItEndsWithAMessage) {
    Process::Options options;
    options.environment = with({{"DISPLAY", ""}});
    options.errorFile = folder_.file("message");
    Process second({folder_.file("program") + "/zvonivec"}, options);
    EXPECT_EQ(second.waitForExit(), 1);
    EXPECT_NE(readFile(options.errorFile).find("could not connect to display"), std::string::npos);
}

// Whether letters have smooth edges at all is the user's choice where the toolkit asks for it, as
// Qt 6.8 does, though not under KDE.
TEST_F(SessionTest, TheTextsLookTheSameWithAnyHinting) {
    setDesktopResources("Xft.hinting:\t0\nXft.hintstyle:\thintnone\n"
                        "Xft.rgba:\trgb\nXft.lcdfilter:\tlcdlight\n");
    Player second(display_, folder_.file("second"), environment());
    ASSERT_TRUE(second.waitUntilShown());
    EXPECT_TRUE(waitUntil([&] { return second.showsStatus("50% hlasitost"); }));
    EXPECT_TRUE(
        waitUntil([&] { return second.informationLeft(player::WELCOME).value_or(200) < 60; },
                  std::chrono::seconds(20)));
}

} // namespace

} // namespace support
