// The menu, and the player above other windows.
#include "tests/wine/wine_test.h"

namespace support {

namespace {

constexpr const char* ABOVE = "_NET_WM_STATE_ABOVE";

TEST_F(WindowsTest, TheMenuOpensAtThePointer) {
    for (const Point place : {player::BODY, Point{300, 320}}) {
        openMenu(place);
        const Point pointer = player_->onScreen(place);
        EXPECT_EQ(menu().value().place(),
                  (Rectangle{pointer.x, pointer.y, menu::WIDTH, menu::HEIGHT}));
        EXPECT_TRUE(menu().value().isUnmanaged());
        keyboard_.key("Escape");
        EXPECT_TRUE(waitUntilMenuIsGone());
    }
}

TEST_F(WindowsTest, TheMenuHidesAfterAPressOutsideIt) {
    PlainWindow other(display_, {20, 600, 100, 60}, 0x804020, PlainWindow::Kind::ordinary);
    player_->window().activate();
    ASSERT_TRUE(waitUntil([&] { return player_->window().isActive(); }));
    const Point places[] = {player_->onScreen({300, 320}),
                            player_->onScreen(player::BUTTONS[player::stop].middle()),
                            other.window().place().middle(),
                            {10, 10}};
    for (const Point place : places) {
        openMenu();
        pointer_.click(place);
        EXPECT_TRUE(waitUntilMenuIsGone()) << place.x << ' ' << place.y;
        player_->window().activate();
        ASSERT_TRUE(waitUntil([&] { return player_->window().isActive(); }));
    }
    // The other program received the press too.
    EXPECT_FALSE(other.takeClicks().empty());
}

TEST_F(WindowsTest, AlwaysOnTopCanBeSwitchedAndPausesForTheMenu) {
    const auto becomesAbove = [&](bool above) {
        return waitUntil([&] { return player_->window().hasState(ABOVE) == above; });
    };
    EXPECT_FALSE(player_->window().hasState(ABOVE));
    choose(menu::ON_TOP);
    ASSERT_TRUE(waitUntilMenuIsGone());
    EXPECT_TRUE(becomesAbove(true));
    openMenu();
    EXPECT_TRUE(becomesAbove(false));
    keyboard_.key("Escape");
    ASSERT_TRUE(waitUntilMenuIsGone());
    EXPECT_TRUE(becomesAbove(true));

    const Rectangle place = player_->window().place();
    const PlainWindow other(display_,
                            {place.x - 20, place.y - 20, place.width + 40, place.height + 40},
                            0x804020, PlainWindow::Kind::ordinary);
    other.window().activate();
    EXPECT_TRUE(waitUntil([&] { return other.window().isActive(); }));
    EXPECT_TRUE(waitUntil([&] { return player_->showsIdleLook(); }));

    choose(menu::ON_TOP);
    ASSERT_TRUE(waitUntilMenuIsGone());
    EXPECT_TRUE(becomesAbove(false));
    other.window().activate();
    EXPECT_TRUE(waitUntil([&] { return !player_->showsIdleLook(); }));
}

} // namespace

} // namespace support
