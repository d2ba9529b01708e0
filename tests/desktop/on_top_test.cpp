// The switch that keeps the player above the other windows.
#include "tests/desktop/menu.h"

#include <algorithm>
#include <csignal>

namespace support {

namespace {

constexpr const char* ABOVE = "_NET_WM_STATE_ABOVE";
constexpr Colour OTHER = 0x804020;

class OnTopTest : public MenuTest, public testing::WithParamInterface<std::string> {
protected:
    OnTopTest() : MenuTest({.windowManager = GetParam()}) {}

    void switchOnTop() {
        choose(menu::ON_TOP);
        ASSERT_TRUE(waitUntilMenuIsGone());
    }
    [[nodiscard]] bool becomesAbove(bool above) const {
        return waitUntil([&] { return player_->window().hasState(ABOVE) == above; });
    }
    /// Opens a window of another program over the player.
    [[nodiscard]] std::unique_ptr<PlainWindow> openOther() const {
        const Rectangle place = player_->window().place();
        auto other = std::make_unique<PlainWindow>(
            display_, Rectangle{place.x - 20, place.y - 20, place.width + 40, place.height + 40},
            OTHER, PlainWindow::Kind::ordinary);
        other->window().activate();
        EXPECT_TRUE(waitUntil([&] { return other->window().isActive(); }));
        // The window has been drawn where the player doesn't reach.
        EXPECT_TRUE(waitUntil(
            [&] { return Screenshot(display_, other->window().place()).at(5, 5) == OTHER; }));
        return other;
    }
    [[nodiscard]] bool playerIsSeen() const {
        return player_->showsButton(player::close, player::Look::normal) &&
               player_->showsButton(player::play, player::Look::disabled);
    }
};

TEST_P(OnTopTest, WithoutItAWindowOpenedLaterCoversThePlayer) {
    EXPECT_FALSE(player_->window().hasState(ABOVE));
    const auto other = openOther();
    EXPECT_TRUE(waitUntil([&] { return !playerIsSeen(); }));
}

TEST_P(OnTopTest, WithItAWindowOpenedLaterDoesNotCoverThePlayer) {
    switchOnTop();
    EXPECT_TRUE(becomesAbove(true));
    const auto other = openOther();
    EXPECT_TRUE(waitUntil([&] { return playerIsSeen(); }));
    EXPECT_TRUE(player_->window().hasState(ABOVE));
}

TEST_P(OnTopTest, SwitchedOffAgainThePlayerCanBeCovered) {
    switchOnTop();
    EXPECT_TRUE(becomesAbove(true));
    switchOnTop();
    EXPECT_TRUE(becomesAbove(false));
    const auto other = openOther();
    EXPECT_TRUE(waitUntil([&] { return !playerIsSeen(); }));
}

TEST_P(OnTopTest, IsGivenUpWhileTheMenuIsOpenAndComesBackWhicheverWayItGoes) {
    switchOnTop();
    ASSERT_TRUE(becomesAbove(true));
    const PlainWindow other(display_, {20, 600, 100, 60}, OTHER, PlainWindow::Kind::ordinary);
    const std::function<void()> waysOut[] = {
        [&] { keyboard_.key("Escape"); },
        [&] { click(menu::LOUDER); },
        [&] { click(menu::REPEAT); },
        [&] { click(player::VOLUME.middle()); },
        [&] { pointer_.click(other.window().place().middle()); },
        [&] {
            pointer_.click({10, 10});
        },
        [&] { other.window().activate(); },
    };
    for (const auto& wayOut : waysOut) {
        openMenu();
        EXPECT_TRUE(becomesAbove(false));
        wayOut();
        EXPECT_TRUE(waitUntilMenuIsGone());
        EXPECT_TRUE(becomesAbove(true));
    }
}

TEST_P(OnTopTest, StartedWithItThePlayerIsAboveAndTheSwitchTakesItBack) {
    player_->process().signal(SIGTERM);
    ASSERT_EQ(player_->process().waitForExit(), 0);
    writeFile(folder_.file("program/MP3.ini"), "[General]\nOnTop=1\n");
    startPlayer();
    EXPECT_TRUE(becomesAbove(true));
    {
        const auto other = openOther();
        EXPECT_TRUE(waitUntil([&] { return playerIsSeen(); }));
    }
    switchOnTop();
    EXPECT_TRUE(becomesAbove(false));
    const auto other = openOther();
    EXPECT_TRUE(waitUntil([&] { return !playerIsSeen(); }));
}

TEST_P(OnTopTest, ChangesNeitherHideNorMoveTheWindow) {
    const WindowHistory history(player_->window());
    const Rectangle place = player_->window().place();
    for (int i = 0; i < 4; ++i) {
        switchOnTop();
        EXPECT_TRUE(becomesAbove(i % 2 == 0));
    }
    EXPECT_EQ(player_->window().place(), place);
    EXPECT_EQ(history.timesHidden(), 0);
    EXPECT_TRUE(history.places().empty());
    EXPECT_TRUE(player_->window().exists()); // the same window, by its number
}

TEST_P(OnTopTest, TheDialogAndTheBoxesLieAboveThePlayer) {
    switchOnTop();
    ASSERT_TRUE(becomesAbove(true));
    const auto liesAbove = [&](const Window& window) {
        const Rectangle place = window.place();
        window.moveTo({player_->window().place().x - 30, player_->window().place().y - 20});
        return waitUntil([&] {
            return window.place() != place &&
                   !player_->showsButton(player::play, player::Look::disabled);
        });
    };
    click(player::LOGO.middle());
    const auto dialog = waitForDialog();
    ASSERT_TRUE(dialog);
    EXPECT_TRUE(liesAbove(*dialog));
    answer(*dialog, "Escape");
    ASSERT_TRUE(waitUntil([&] { return player_->window().isActive(); }));
    EXPECT_TRUE(player_->window().hasState(ABOVE));
}

TEST_P(OnTopTest, OutlastsMinimisingAndRestoring) {
    switchOnTop();
    ASSERT_TRUE(becomesAbove(true));
    click(player::minimise);
    ASSERT_TRUE(waitUntil([&] { return player_->window().isMinimised(); }));
    player_->window().activate();
    ASSERT_TRUE(waitUntil([&] { return player_->window().isShown(); }));
    EXPECT_TRUE(becomesAbove(true));
}

INSTANTIATE_TEST_SUITE_P(Under, OnTopTest, testing::ValuesIn(managedDesktops({"openbox", "xfwm4"})),
                         desktopName);

} // namespace

} // namespace support
