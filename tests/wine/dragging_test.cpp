// The system's own move command, with each button.
#include "tests/wine/wine_test.h"

#include <algorithm>
#include <cstdlib>
#include <functional>

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
        return moveToAndFroUntil(from, [&] { return !(corner() == before); });
    }
    /// The window stands at a place, or one pixel beside it: the move may have begun from there,
    /// and the pointer goes to and fro.
    [[nodiscard]] bool standsNear(Point place) const {
        const Point now = corner();
        return std::abs(now.x - place.x) <= 1 && now.y == place.y;
    }
    /// Moves the pointer by so much from a place, and the window after it. Returns false when the
    /// window doesn't follow. Only the left button moves it at once: with others a window under
    /// Wine 10 hears of no pointer outside it.
    [[nodiscard]] bool drag(Point pointer, Point window, Point by, int button) {
        constexpr int longest = 10;
        const int steps = button == 1 ? 1 : std::max(std::abs(by.x), std::abs(by.y)) / longest + 1;
        for (int step = 1; step <= steps; ++step) {
            const Point moved{by.x * step / steps, by.y * step / steps};
            const bool followed =
                moveToAndFroUntil({pointer.x + moved.x, pointer.y + moved.y}, [&] {
                    return standsNear({window.x + moved.x, window.y + moved.y});
                });
            if (!followed) {
                return false;
            }
        }
        return true;
    }

private:
    /// Wine may swallow a single move.
    [[nodiscard]] bool moveToAndFroUntil(Point place, const std::function<bool()>& condition) {
        bool there = false;
        return waitUntil([&] {
            there = !there;
            pointer_.moveTo({place.x + (there ? 1 : 0), place.y});
            return condition();
        });
    }
};

TEST_P(DraggingTest, FollowsThePointerWithEachButton) {
    for (const int button : {1, 2, 3}) {
        const Point before = corner();
        const Point from = player_->onScreen(player::BODY);
        ASSERT_TRUE(startMove(from, button)) << button;
        Point there{0, 0};
        for (const Point step : {Point{40, 25}, Point{-160, 65}, Point{110, -105}}) {
            EXPECT_TRUE(drag({from.x + there.x, from.y + there.y},
                             {before.x + there.x, before.y + there.y}, step, button))
                << button;
            EXPECT_FALSE(menu());
            there = {there.x + step.x, there.y + step.y};
        }
        pointer_.release(button);
        if (button == 3) {
            EXPECT_TRUE(waitUntil([&] { return menu().has_value(); }));
            click(Point{300, 320});
            EXPECT_TRUE(waitUntilMenuIsGone());
        }
        // Without a pressed button the window stays and the pointer lights up buttons. With the
        // first the move is over.
        EXPECT_TRUE(lightsUp(player::minimise));
        const Point after = corner();
        moveTo(player::BODY);
        EXPECT_TRUE(lightsUp(player::close));
        EXPECT_TRUE(standsNear(after));
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
