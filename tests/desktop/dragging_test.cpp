// Dragging the player by its body and its display.
#include "tests/desktop/menu.h"

#include <algorithm>
#include <cmath>

namespace support {

namespace {

constexpr int BUTTONS_OF_A_MOUSE[] = {1, 2, 3};

class DraggingTest : public MenuTest, public testing::WithParamInterface<std::string> {
protected:
    DraggingTest() : MenuTest({.windowManager = GetParam()}) {}

    /// Waits until the window is where it asked to be, in spite of the frame that a window manager
    /// may have given it.
    void SetUp() override {
        MenuTest::SetUp();
        ASSERT_TRUE(becomesPlacedAt(
            {(display_.width() - player::WIDTH + 1) / 2, (display_.height() - player::HEIGHT) / 2}))
            << corner().x << ' ' << corner().y;
    }
    [[nodiscard]] Point corner() const {
        const Rectangle place = player_->window().place();
        return {place.x, place.y};
    }
    [[nodiscard]] bool becomesPlacedAt(Point place) const {
        return waitUntil([&] { return corner() == place; });
    }
    /// Presses, and waits until a window manager has given the player the keyboard.
    void press(Point place, int button) {
        moveTo(place);
        pointer_.press(button);
        if (display_.hasWindowManager()) {
            ASSERT_TRUE(waitUntil([&] { return player_->window().isActive(); }));
        }
    }
};

TEST_P(DraggingTest, EverySurfaceDragsWithEveryButton) {
    // Between the letters the strip itself takes the press, at the letters one of its two labels.
    ASSERT_TRUE(
        waitUntil([&] { return player_->informationLeft(player::WELCOME).value_or(200) < 20; },
                  std::chrono::seconds(20)));
    const Point surfaces[] = {player::BODY, Point{170, 62}, Point{170, 71}, Point{90, 58},
                              Point{300, 320}};
    for (const Point surface : surfaces) {
        for (const int button : BUTTONS_OF_A_MOUSE) {
            const Point before = corner();
            const Point from = player_->onScreen(surface);
            press(surface, button);
            pointer_.moveTo({from.x + 40, from.y + 25});
            EXPECT_TRUE(becomesPlacedAt({before.x + 40, before.y + 25})) << surface.x << button;
            EXPECT_FALSE(menu());
            pointer_.moveTo({from.x - 10, from.y - 15});
            pointer_.release(button);
            EXPECT_TRUE(becomesPlacedAt({before.x - 10, before.y - 15})) << surface.x << button;
            if (button == 3) {
                EXPECT_TRUE(waitUntil([&] { return menu().has_value(); })) << surface.x;
                EXPECT_EQ(menu().value().place(),
                          (Rectangle{from.x - 10, from.y - 15, menu::WIDTH, menu::HEIGHT}));
                keyboard_.key("Escape");
                EXPECT_TRUE(waitUntilMenuIsGone());
            }
            pointer_.moveTo({from.x, from.y}); // without a button nothing moves
            moveTo(surface);
            EXPECT_EQ(corner(), (Point{before.x - 10, before.y - 15}));
            EXPECT_FALSE(menu());
        }
    }
}

TEST_P(DraggingTest, NothingElseDrags) {
    playFile(30);
    const Point before = corner();
    const Rectangle others[] = {player::STATUS,
                                player::VOLUME,
                                player::LOGO,
                                player::BAR,
                                player::MARK,
                                player::BUTTONS[player::pause],
                                Rectangle{40, 264, 30, 13},
                                Rectangle{267, 264, 30, 13}};
    for (const Rectangle& other : others) {
        for (const int button : BUTTONS_OF_A_MOUSE) {
            const Point from = player_->onScreen(other.middle());
            press(other.middle(), button);
            pointer_.moveTo({from.x + 60, from.y + 35});
            // The release elsewhere keeps the logo from opening its dialog only with buttons that
            // open none.
            if (other == player::LOGO && button == 1) {
                pointer_.release(button);
                const auto dialog = waitForDialog();
                ASSERT_TRUE(dialog);
                answer(*dialog, "Escape");
                ASSERT_TRUE(waitUntil(
                    [&] { return player_->window().isActive() || !display_.hasWindowManager(); }));
            } else {
                pointer_.release(button);
            }
            EXPECT_FALSE(menu());
        }
    }
    // Events come in order: when this drag shows, the others have been served.
    const Point from = player_->onScreen(player::BODY);
    press(player::BODY, 1);
    pointer_.moveTo({from.x + 1, from.y + 2});
    pointer_.release(1);
    EXPECT_TRUE(becomesPlacedAt({before.x + 1, before.y + 2}));
}

TEST_P(DraggingTest, AClickMovesNothing) {
    const WindowHistory history(player_->window());
    const Point before = corner();
    for (const int button : {1, 2}) {
        click(player::BODY, button);
    }
    openMenu();
    keyboard_.key("Escape");
    EXPECT_TRUE(waitUntilMenuIsGone());
    EXPECT_EQ(corner(), before);
    EXPECT_TRUE(
        std::ranges::all_of(history.places(), [&](Point place) { return place == before; }));
}

TEST_P(DraggingTest, ThePressedPointStaysUnderThePointerAtAnySpeed) {
    const WindowHistory history(player_->window());
    const Point before = corner();
    const Point from = player_->onScreen(player::BODY);
    press(player::BODY, 1);
    std::vector<Point> way;
    for (int i = 1; i <= 400; ++i) {
        // Circles, slow and fast, with a leap across the screen now and then.
        const double angle = i * i / 600.0;
        const Point step{static_cast<int>(std::lround(150 * std::sin(angle))) +
                             (i % 50 == 0 ? 250 : 0),
                         static_cast<int>(std::lround(90 * (1 - std::cos(angle))))};
        way.push_back({before.x + step.x, before.y + step.y});
        pointer_.moveTo({from.x + step.x, from.y + step.y});
        if (i % 20 == 0) {
            EXPECT_TRUE(becomesPlacedAt(way.back())) << i;
        }
    }
    pointer_.release(1);
    EXPECT_TRUE(becomesPlacedAt(way.back()));
    // The window was seen only where the pointer had been, and in that order.
    auto next = way.begin();
    for (const Point place : history.places()) {
        if (place == before) {
            continue;
        }
        const auto found = std::find(next, way.end(), place);
        ASSERT_NE(found, way.end()) << place.x << ' ' << place.y << " is none of the way";
        next = found;
    }
}

TEST_P(DraggingTest, ASecondButtonNeitherEndsNorShiftsTheMove) {
    const Point before = corner();
    const Point from = player_->onScreen(player::BODY);
    press(player::BODY, 1);
    pointer_.moveTo({from.x + 30, from.y + 20});
    EXPECT_TRUE(becomesPlacedAt({before.x + 30, before.y + 20}));
    pointer_.press(2);
    pointer_.moveTo({from.x + 50, from.y + 40});
    EXPECT_TRUE(becomesPlacedAt({before.x + 50, before.y + 40}));
    pointer_.release(1);
    pointer_.moveTo({from.x + 70, from.y + 10});
    EXPECT_TRUE(becomesPlacedAt({before.x + 70, before.y + 10}));
    pointer_.release(2);
    pointer_.moveTo({from.x, from.y});
    moveTo(player::BUTTONS[player::close].middle());
    EXPECT_TRUE(
        waitUntil([&] { return player_->showsButton(player::close, player::Look::hover); }));
    EXPECT_EQ(corner(), (Point{before.x + 70, before.y + 10}));
}

TEST_P(DraggingTest, GoesBeyondTheEdgesOfTheScreen) {
    const Point from = player_->onScreen(player::BODY);
    const Point before = corner();
    press(player::BODY, 1);
    for (const Point pointer : {Point{1240, 790}, Point{5, 795}, Point{3, 100}, from}) {
        pointer_.moveTo(pointer);
        const Point place{before.x + pointer.x - from.x, before.y + pointer.y - from.y};
        // A window manager that refuses the place moves the window itself from the next step on.
        EXPECT_TRUE(waitUntil([&] {
            pointer_.moveTo({pointer.x - 1, pointer.y});
            pointer_.moveTo(pointer);
            return waitUntil([&] { return corner() == place; }, std::chrono::milliseconds(200));
        })) << corner().x
            << ' ' << corner().y << " instead of " << place.x << ' ' << place.y;
    }
    pointer_.release(1);
}

TEST_P(DraggingTest, ADragStartsWhereTheWindowIsThoughTheOneBeforeWentTooFar) {
    const Point far = player_->onScreen(player::BODY);
    press(player::BODY, 1);
    pointer_.moveTo({far.x + 400, far.y + 350});
    pointer_.release(1);
    // The window manager may have kept the window on the screen.
    Point before = corner();
    EXPECT_TRUE(waitUntil([&] {
        const Point now = corner();
        const bool rests = now == before && now.x > far.x - player::BODY.x;
        before = now;
        return rests &&
               !waitUntil([&] { return !(corner() == now); }, std::chrono::milliseconds(300));
    }));
    const Point from = player_->onScreen({30, 100});
    press({30, 100}, 1);
    pointer_.moveTo({from.x - 100, from.y - 50});
    EXPECT_TRUE(becomesPlacedAt({before.x - 100, before.y - 50}))
        << corner().x << ' ' << corner().y;
    pointer_.release(1);
}

TEST_P(DraggingTest, DoesNotStopTheTrack) {
    playFile(30);
    const Point before = corner();
    const Point from = player_->onScreen(player::BODY);
    press(player::BODY, 1);
    pointer_.moveTo({from.x + 100, from.y + 20});
    EXPECT_TRUE(becomesPlacedAt({before.x + 100, before.y + 20}));
    const Screenshot strip = player_->screenshot(player::INFORMATION);
    EXPECT_TRUE(waitUntil([&] { return !(player_->screenshot(player::INFORMATION) == strip); }));
    EXPECT_TRUE(waitForSound());
    pointer_.release(1);
}

INSTANTIATE_TEST_SUITE_P(Under, DraggingTest, testing::ValuesIn(desktops({"openbox", "xfwm4", ""})),
                         desktopName);

} // namespace

} // namespace support
