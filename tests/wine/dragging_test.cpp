// The system's own move, with each button.
#include "tests/wine/wine_test.h"

#include <cstdlib>

namespace support {

namespace {

class DraggingTest : public WindowsTest, public testing::WithParamInterface<std::string> {
protected:
    DraggingTest() : WindowsTest("", {.windowManager = GetParam()}) {}

    /// Presses and moves a little, to and fro, until the window goes with the pointer: Wine begins
    /// the move where the pointer is when the press has reached the program. False when it never
    /// goes.
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
    /// Wherever the move began, the window is at most the little move's pixel beside its place.
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
        // Without a button nothing moves: the pointer lights a button, and the window is there yet.
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
