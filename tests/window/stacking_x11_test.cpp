// Above all other windows, or not: what the X server is told of the main window.

#include "platform/modDeklarace.h"
#include "tests/window/player_test.h"

#include <QGuiApplication>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <algorithm>

namespace zvonivec {
namespace {

class Stacking : public PlayerTest {
protected:
    void SetUp() override { start(); }

    [[nodiscard]] bool isTopmost() const {
        ::Display* server =
            qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->display();
        const Atom above = XInternAtom(server, "_NET_WM_STATE_ABOVE", False);
        Atom type = None;
        int format = 0;
        unsigned long count = 0;
        unsigned long rest = 0;
        unsigned char* data = nullptr;
        XGetWindowProperty(server, mainWindow(), XInternAtom(server, "_NET_WM_STATE", False), 0, 64,
                           False, XA_ATOM, &type, &format, &count, &rest, &data);
        const auto* states = reinterpret_cast<const Atom*>(data);
        const bool found =
            data != nullptr && std::find(states, states + count, above) != states + count;
        if (data != nullptr) {
            XFree(data);
        }
        return found;
    }
    [[nodiscard]] bool becomesTopmost(bool topmost) {
        return serveUntil([&] { return isTopmost() == topmost; });
    }
    [[nodiscard]] ::Window mainWindow() const { return static_cast<::Window>(window().winId()); }
    void makeTopmost() {
        modDeklarace::SetWindowPos(player().hWnd(), modDeklarace::INSERT_TOPMOST, 0, 0, 0, 0,
                                   modDeklarace::NO_SIZE_NO_MOVE);
        ASSERT_TRUE(becomesTopmost(true));
    }
};

TEST_F(Stacking, WithTheSwitchOffClosingTheMenuMakesTheWindowNonTopmost) {
    makeTopmost(); // by somebody else: the switch stays off
    player().ShowPopupMenu();
    DoEvents();
    EXPECT_TRUE(isTopmost());
    popup().Form_Deactivate();
    EXPECT_TRUE(becomesTopmost(false));
}

TEST_F(Stacking, WithTheSwitchOnTheMenuTakesItAwayAndGivesItBack) {
    popup().chkPopup[popupOnTop].setValue(1);
    ASSERT_TRUE(becomesTopmost(true));
    player().ShowPopupMenu();
    EXPECT_TRUE(becomesTopmost(false));
    popup().Form_Deactivate();
    EXPECT_TRUE(becomesTopmost(true));
}

TEST_F(Stacking, AnUndecidedSwitchIsOff) {
    popup().chkPopup[popupOnTop].setValue(1);
    ASSERT_TRUE(becomesTopmost(true));
    popup().chkPopup[popupOnTop].setValue(2);
    EXPECT_TRUE(becomesTopmost(false));
}

} // namespace
} // namespace zvonivec
