// The window's outline, for the eye and for clicks.
#include "tests/desktop/desktop_test.h"

#include <fstream>

namespace support {

namespace {

constexpr Colour MAGENTA = 0xFF00FF;

/// Returns the outline's pixels, read from rectangles "left top right bottom". Right and bottom are
/// outside.
class Outline {
public:
    Outline() {
        std::ifstream file(std::string(TEST_DATA) + "/outline_rects.txt");
        int left = 0;
        int top = 0;
        int right = 0;
        int bottom = 0;
        while (file >> left >> top >> right >> bottom) {
            rectangles_.push_back({left, top, right - left, bottom - top});
        }
    }
    [[nodiscard]] bool contains(Point place) const {
        for (const Rectangle& rectangle : rectangles_) {
            if (rectangle.contains(place)) {
                return true;
            }
        }
        return false;
    }

private:
    std::vector<Rectangle> rectangles_;
};

DisplayOptions under(const std::string& windowManager) {
    return {.windowManager = windowManager};
}

class ShapeTest : public DesktopTest, public testing::WithParamInterface<std::string> {
protected:
    ShapeTest() : DesktopTest(under(GetParam())) {}

    /// Under a compositor the edge is smooth: pixels beside it may be covered in part. All others
    /// show the player or what lies beneath.
    void expectSmoothOutline() {
        const Screenshot screenshot = player_->screenshot(surroundings_);
        int wrong = 0;
        int mixed = 0;
        for (int y = 1; y < screenshot.height() - 1; ++y) {
            for (int x = 1; x < screenshot.width() - 1; ++x) {
                const Point place{surroundings_.x + x, surroundings_.y + y};
                const bool inside = outline_.contains(place);
                bool isEdge = false;
                for (const Point step : {Point{-1, 0}, Point{1, 0}, Point{0, -1}, Point{0, 1},
                                         Point{-1, -1}, Point{1, 1}, Point{-1, 1}, Point{1, -1}}) {
                    isEdge =
                        isEdge || outline_.contains({place.x + step.x, place.y + step.y}) != inside;
                }
                const bool isSeen = screenshot.at(x, y) != MAGENTA;
                wrong += isSeen != inside && !isEdge ? 1 : 0;
                // A mixture with magenta has little green and much of the other two.
                const Colour colour = screenshot.at(x, y);
                mixed += isEdge && isSeen && (colour >> 16U) > 0x80 && (colour & 0xFFU) > 0x80 &&
                                 ((colour >> 8U) & 0xFFU) < 0x70
                             ? 1
                             : 0;
            }
        }
        EXPECT_EQ(wrong, 0);
        EXPECT_GT(mixed, 5);
    }

    const Outline outline_;
    const Rectangle surroundings_{-30, -30, player::WIDTH + 60, player::HEIGHT + 60};
};

TEST_P(ShapeTest, IsSeenInExactlyTheOutlinesPixels) {
    const PlainWindow backdrop(display_, {0, 0, display_.width(), display_.height()}, MAGENTA);
    ASSERT_TRUE(waitUntil([&] { return player_->showsIdleLook(); }));
    if (display_.hasCompositor()) {
        expectSmoothOutline();
        return;
    }
    int seen = 0;
    int wrong = 0;
    const Screenshot screenshot = player_->screenshot(surroundings_);
    for (int y = 0; y < screenshot.height(); ++y) {
        for (int x = 0; x < screenshot.width(); ++x) {
            const bool isSeen = screenshot.at(x, y) != MAGENTA;
            seen += isSeen ? 1 : 0;
            const Point place{surroundings_.x + x, surroundings_.y + y};
            wrong += isSeen != outline_.contains(place) ? 1 : 0;
        }
    }
    EXPECT_EQ(seen, 110210);
    EXPECT_EQ(wrong, 0);
}

TEST_P(ShapeTest, ClicksOutsideTheOutlineReachWhatLiesBeneath) {
    PlainWindow backdrop(display_, {0, 0, display_.width(), display_.height()}, MAGENTA);
    // Every pixel next to a pixel of the other side, and the corners of the rectangle.
    std::vector<Point> outside{{0, 0}, {336, 0}, {0, 335}, {336, 335}, {337, 0}, {0, 336}};
    std::vector<Point> inside;
    for (int y = -1; y <= player::HEIGHT; ++y) {
        for (int x = -1; x <= player::WIDTH; ++x) {
            const bool here = outline_.contains({x, y});
            if (here != outline_.contains({x + 1, y}) || here != outline_.contains({x - 1, y}) ||
                here != outline_.contains({x, y + 1}) || here != outline_.contains({x, y - 1})) {
                (here ? inside : outside).push_back({x, y});
            }
        }
    }
    for (const Point place : outside) {
        click(place);
        EXPECT_EQ(backdrop.takeClicks().size(), 2U) << place.x << ' ' << place.y;
    }
    for (const Point place : inside) {
        click(place);
        EXPECT_EQ(backdrop.takeClicks().size(), 0U) << place.x << ' ' << place.y;
    }
}

TEST_P(ShapeTest, IsAFramelessWindowInTheMiddle) {
    const Window& window = player_->window();
    EXPECT_FALSE(window.hasFrame());
    const Rectangle middle{(display_.width() - player::WIDTH + 1) / 2,
                           (display_.height() - player::HEIGHT) / 2, player::WIDTH, player::HEIGHT};
    // i3 puts the window elsewhere at first.
    EXPECT_TRUE(waitUntil([&] { return window.place() == middle; }))
        << window.place().x << ' ' << window.place().y;
    if (display_.hasWindowManager()) {
        EXPECT_TRUE(waitUntil([&] { return managedWindows(display_) == std::vector{window}; }));
        EXPECT_FALSE(window.hasState("_NET_WM_STATE_ABOVE"));
        EXPECT_FALSE(window.hasState("_NET_WM_STATE_SKIP_TASKBAR"));
    }
}

TEST_P(ShapeTest, MinimisedAndRestoredItLooksAsBefore) {
    const PlainWindow backdrop(display_, {0, 0, display_.width(), display_.height()}, MAGENTA);
    const Window& window = player_->window();
    const Rectangle place = window.place();
    ASSERT_TRUE(waitUntil([&] { return player_->showsIdleLook(); }));

    click(player::minimise);
    if (!display_.hasWindowManager()) {
        // Nothing minimises windows here, so the player stays as it is.
        EXPECT_TRUE(waitUntil(
            [&] { return player_->showsButton(player::minimise, player::Look::normal); }));
        return;
    }
    EXPECT_TRUE(waitUntil([&] { return window.isMinimised(); }));
    const Point middle = place.middle();
    // Mutter leaves the window mapped and shows it no more.
    EXPECT_TRUE(waitUntil([&] {
        return Screenshot(display_, {middle.x, middle.y, 1, 1}).at(0, 0) == MAGENTA;
    }));

    window.activate();
    EXPECT_TRUE(waitUntil([&] { return window.isShown() && !window.isMinimised(); }));
    EXPECT_EQ(window.place(), place);
    EXPECT_TRUE(waitUntil([&] { return player_->showsIdleLook(); }));
    const Screenshot corner = player_->screenshot({0, 0, 2, 2});
    EXPECT_EQ(corner.at(0, 0), MAGENTA);
}

INSTANTIATE_TEST_SUITE_P(Under, ShapeTest, testing::ValuesIn(desktops({"openbox", "xfwm4", ""})),
                         desktopName);

} // namespace

} // namespace support
