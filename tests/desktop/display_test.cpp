// The desktop that the other tests need. When one of these tests fails, mend it first.
#include "tests/desktop/desktops.h"
#include "tests/support/display.h"
#include "tests/support/pointer.h"
#include "tests/support/screenshot.h"
#include "tests/support/window.h"

#include <gtest/gtest.h>

using support::Display;
using support::PlainWindow;
using support::Screenshot;
using support::waitUntil;
using support::Window;

namespace {

constexpr support::Colour GREEN = 0x20A040;
constexpr support::Colour VIOLET = 0x8020C0;

TEST(DisplayTest, ClicksGoToTheWindowUnderThePointer) {
    const Display display({.windowManager = ""});
    ASSERT_TRUE(display.ok()) << display.problem();
    PlainWindow backdrop(display, {0, 0, 1280, 800}, GREEN);
    PlainWindow ordinary(display, {100, 100, 50, 40}, VIOLET, PlainWindow::Kind::ordinary);
    const support::Pointer pointer(display);

    pointer.click({20, 30});
    pointer.click({110, 120}, 3);

    const std::vector<PlainWindow::Click> beneath = {{{20, 30}, 1, true}, {{20, 30}, 1, false}};
    const std::vector<PlainWindow::Click> above = {{{110, 120}, 3, true}, {{110, 120}, 3, false}};
    EXPECT_EQ(backdrop.takeClicks(), beneath);
    EXPECT_EQ(ordinary.takeClicks(), above);
    EXPECT_TRUE(backdrop.takeClicks().empty());
}

TEST(DisplayTest, ScreenshotsShowThePartAskedFor) {
    const Display display({.windowManager = ""});
    ASSERT_TRUE(display.ok()) << display.problem();
    const PlainWindow backdrop(display, {0, 0, 1280, 800}, GREEN);
    const PlainWindow ordinary(display, {100, 100, 50, 40}, VIOLET, PlainWindow::Kind::ordinary);

    const Screenshot part(display, {99, 99, 52, 42});

    EXPECT_EQ(part.width(), 52);
    EXPECT_EQ(part.height(), 42);
    EXPECT_EQ(part.at(0, 0), GREEN);
    EXPECT_EQ(part.at(1, 1), VIOLET);
    EXPECT_EQ(part.at(50, 40), VIOLET);
    EXPECT_EQ(part.at(51, 41), GREEN);
    EXPECT_EQ(Screenshot(display, {1270, 790, 50, 50}).width(), 10);
}

class WindowManagerTest : public testing::TestWithParam<std::string> {};

TEST_P(WindowManagerTest, ListsMinimisesAndRestoresWindows) {
    const Display display({.windowManager = GetParam()});
    ASSERT_TRUE(display.ok()) << display.problem();
    const PlainWindow backdrop(display, {0, 0, 1280, 800}, GREEN);
    const PlainWindow ordinary(display, {300, 200, 200, 100}, VIOLET, PlainWindow::Kind::ordinary);
    const Window& window = ordinary.window();

    EXPECT_TRUE(waitUntil([&] { return managedWindows(display) == std::vector{window}; }));
    EXPECT_TRUE(waitUntil([&] { return window.hasFrame(); }));
    EXPECT_EQ(window.title(), "Plain window");
    EXPECT_TRUE(backdrop.window().isUnmanaged());
    EXPECT_FALSE(window.isUnmanaged());

    window.minimise();
    EXPECT_TRUE(waitUntil([&] { return window.isMinimised() && !window.isShown(); }));
    window.activate();
    EXPECT_TRUE(waitUntil([&] { return window.isShown() && window.isActive(); }));
    EXPECT_FALSE(window.isMinimised());
}

TEST_P(WindowManagerTest, TwoDisplaysStandSideBySide) {
    const Display one({.windowManager = GetParam()});
    const Display other({.windowManager = GetParam()});
    EXPECT_TRUE(one.ok()) << one.problem();
    EXPECT_TRUE(other.ok()) << other.problem();
    EXPECT_NE(one.environment()[0], other.environment()[0]);
}

INSTANTIATE_TEST_SUITE_P(All, WindowManagerTest,
                         testing::ValuesIn(support::managedDesktops({"openbox", "xfwm4"})),
                         support::desktopName);

} // namespace
