#include "tests/desktop/menu.h"

#include "tests/support/alive_question.h"

namespace support {

std::optional<Window> MenuTest::menu() const {
    return findWindow(display_, [this](const Window& window) {
        const Rectangle place = window.place();
        return window.pid() == player_->process().pid() && place.width == menu::WIDTH &&
               place.height == menu::HEIGHT && window.isShown();
    });
}

void MenuTest::openMenu(Point place) {
    click(place, 3);
    const auto shown = [this] { return menu().has_value(); };
    // A window manager that still closes a menu of its own, or takes in that a dialog has gone,
    // loses a click now and then, with any program. A user clicks again.
    if (display_.hasWindowManager() && !waitUntil(shown, std::chrono::seconds(2))) {
        click(place, 3);
    }
    ASSERT_TRUE(waitUntil(shown));
}

void MenuTest::moveWindow(Point wanted) {
    // When the player has been painted it looks once more whether it is in its place.
    ASSERT_TRUE(
        waitUntil([&] { return player_->showsButton(player::close, player::Look::normal); }));
    ASSERT_TRUE(AliveQuestion(display_).ask(player_->window(), [] { return true; }));
    player_->window().moveTo(wanted);
    ASSERT_TRUE(waitUntil([&] {
        const Rectangle now = player_->window().place();
        return now.x == wanted.x && now.y == wanted.y;
    }));
}

bool MenuTest::waitUntilMenuIsGone() const {
    return waitUntil([this] { return !menu(); });
}

void MenuTest::moveTo(const menu::Line& line) const {
    const Rectangle place = menu().value().place();
    pointer_.moveTo(line.place().movedBy({place.x, place.y}).middle());
}

void MenuTest::click(const menu::Line& line, int button) const {
    const Rectangle place = menu().value().place();
    pointer_.click(line.place().movedBy({place.x, place.y}).middle(), button);
}

void MenuTest::choose(const menu::Line& line) {
    openMenu();
    click(line);
}

} // namespace support
