// The system's own move command, with each button.
#include "tests/wine/wine_test.h"

#include <cstdlib>

namespace support {

namespace {

class DraggingTest : public WindowsTest, public testing::WithParamInterface<std::string> {
protected:
    DraggingTest() : WindowsTest("", {.windowManager = GetParam()}) {}

    /// Presses and moves the pointer to and fro until the window follows it. Wine begins the move
    /// from the pointer's place at the moment when the press reaches the program. Returns false
    /// when the window never follows.
    [[nodiscard]] bool startMove(Point from, int button) {
        const Point before = corner();
        pointer_.moveTo(from);
        pointer_.press(button);
        bool there = false;
        return waitUntil([&] {
            there = !there;
            pointer_.moveTo({from.x + (there ? 1 : 0), from.y});
            return !(corner() == before);
        });
    }
    /// The window is at its place, or one pixel beside it if the move began from there.
    [[nodiscard]] bool becomesPlacedNear(Point place) const {
        return waitUntil([&] {
            const Point now = corner();
            return std::abs(now.x - place.x) <= 1 && now.y == place.y;
        });
    }
};

TEST_P(DraggingTest, FollowsThePointerWithEachButton) {
    for (const int button : {1, 2, 3}) {
        const Point before = corner();
        const Point from = player_->onScreen(player::BODY);
        ASSERT_TRUE(startMove(from, button)) << button;
        for (const Point step : {Point{40, 25}, Point{-120, 90}, Point{-10, -15}}) {
            pointer_.moveTo({from.x + step.x, from.y + step.y});
            EXPECT_TRUE(becomesPlacedNear({before.x + step.x, before.y + step.y})) << button;
            EXPECT_FALSE(menu());
        }
        pointer_.release(button);
        if (button == 3) {
            EXPECT_TRUE(waitUntil([&] { return menu().has_value(); }));
            click(Point{300, 320});
            EXPECT_TRUE(waitUntilMenuIsGone());
        }
        // Without a pressed button the window stays and the pointer lights up a button.
        const Point after = corner();
        moveTo(player::BODY);
        EXPECT_TRUE(lightsUp(player::close));
        EXPECT_EQ(corner(), after);
        EXPECT_FALSE(menu());
    }
    closePlayer();
}

INSTANTIATE_TEST_SUITE_P(Under, DraggingTest, testing::Values("openbox", ""),
                         [](const auto& tested) {
                             return tested.param.empty() ? "none" : tested.param;
                         });

} // namespace

} // namespace support
