// The message boxes belong to the player, and lie above it.
#include "tests/desktop/menu.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace support {

namespace {

class BoxesTest : public MenuTest, public testing::WithParamInterface<std::string> {
protected:
    BoxesTest() : MenuTest({.windowManager = GetParam()}) {}

    /// The window that another belongs to, as it tells the window manager.
    [[nodiscard]] Window::Id ownerOf(const Window& window) const {
        ::Window owner = None;
        return XGetTransientForHint(display_.connection(), window.id(), &owner) != 0 ? owner : None;
    }
    void switchOnTop() {
        choose(menu::ON_TOP);
        ASSERT_TRUE(waitUntilMenuIsGone());
        ASSERT_TRUE(
            waitUntil([this] { return player_->window().hasState("_NET_WM_STATE_ABOVE"); }));
    }
    /// Whether a window that is moved over the player's buttons covers them.
    [[nodiscard]] bool coversThePlayer(const Window& window) const {
        const auto playIsSeen = [this] {
            return player_->showsButton(player::play, player::Look::disabled);
        };
        window.moveTo({10, 10});
        EXPECT_TRUE(waitUntil(playIsSeen));
        const Rectangle box = window.place();
        const Point middle = player_->onScreen(player::BUTTONS.at(player::play).middle());
        window.moveTo({middle.x - box.width / 2, middle.y - box.height / 2});
        return waitUntil([&] { return window.place().contains(middle) && !playIsSeen(); });
    }
    void expectBoxOfThePlayer(const std::optional<Window>& box) {
        ASSERT_TRUE(box);
        EXPECT_EQ(ownerOf(*box), player_->window().id());
        EXPECT_TRUE(coversThePlayer(*box));
        answer(*box, "Return");
    }
};

TEST_P(BoxesTest, TheRefusalLiesAboveAPlayerThatIsAlwaysOnTop) {
    switchOnTop();
    const std::string file = folder_.file("text.mp3");
    writeFile(file, "no music at all");
    openFile(file);
    expectBoxOfThePlayer(waitForMessageBox());
    const auto dialog = waitForDialog();
    ASSERT_TRUE(dialog);
    answer(*dialog, "Escape");
}

TEST_P(BoxesTest, TheAboutBoxLiesAboveAPlayerThatIsAlwaysOnTop) {
    switchOnTop();
    choose(menu::ABOUT);
    expectBoxOfThePlayer(waitForWindowWithKeyboard([](const Window& window) {
        return window.title() == std::string("O programu ") + player::TITLE;
    }));
}

INSTANTIATE_TEST_SUITE_P(Under, BoxesTest, testing::ValuesIn(managedDesktops({"openbox", "xfwm4"})),
                         desktopName);

} // namespace

} // namespace support
