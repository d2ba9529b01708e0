// The player without a file.
#include "tests/desktop/desktop_test.h"

namespace support {

namespace {

class IdleTest : public DesktopTest {
protected:
    explicit IdleTest(const DisplayOptions& options = {}) : DesktopTest(options) {}
};

/// Runs without a window manager. Window managers that see clicks first, to raise a window, lose
/// some of the clicks that follow each other at once, with any program.
class QuickClicksTest : public IdleTest {
protected:
    QuickClicksTest() : IdleTest({.windowManager = ""}) {}
};

TEST_F(IdleTest, ShowsItsPicturesAndTexts) {
    EXPECT_TRUE(waitUntil([&] { return player_->showsIdleLook(); }));
    EXPECT_TRUE(waitUntil([&] { return player_->showsStatus("50% hlasitost"); }));
    EXPECT_FALSE(player_->barValue());
    EXPECT_EQ(player_->window().title(), player::TITLE);
}

TEST_F(IdleTest, TheWelcomeTextScrollsThroughTheDisplayAgainAndAgain) {
    const auto isLeftOf = [this](int place) {
        const auto left = player_->informationLeft(player::WELCOME);
        return left && *left < place;
    };
    const auto isRightOf = [this](int place) {
        const auto left = player_->informationLeft(player::WELCOME);
        return left && *left > place;
    };
    EXPECT_TRUE(waitUntil([&] { return isRightOf(60); }, std::chrono::seconds(20)));
    EXPECT_TRUE(waitUntil([&] { return isLeftOf(-60); }, std::chrono::seconds(20)));
    EXPECT_TRUE(waitUntil([&] { return isRightOf(60); }, std::chrono::seconds(40)));
}

TEST_F(QuickClicksTest, TheFiveButtonsDoNothing) {
    for (const auto button :
         {player::rewind, player::pause, player::play, player::stop, player::forward}) {
        click(button);
    }
    // Events come in order: when this one shows, the others have been served.
    moveTo(player::BUTTONS[player::close].middle());
    EXPECT_TRUE(
        waitUntil([&] { return player_->showsButton(player::close, player::Look::hover); }));
    moveTo(player::BODY);
    EXPECT_TRUE(waitUntil([&] { return player_->showsIdleLook(); }));
}

TEST_F(IdleTest, MinimiseAndCloseShowWhereThePointerIs) {
    for (const auto button : {player::minimise, player::close}) {
        const Point middle = player::BUTTONS.at(button).middle();
        moveTo(middle);
        EXPECT_TRUE(waitUntil([&] { return player_->showsButton(button, player::Look::hover); }));
        moveTo(player::BODY);
        EXPECT_TRUE(waitUntil([&] { return player_->showsButton(button, player::Look::normal); }));

        // Other mouse buttons neither show nor do anything.
        for (const int other : {2, 3}) {
            click(middle, other);
            EXPECT_TRUE(
                waitUntil([&] { return player_->showsButton(button, player::Look::hover); }));
            moveTo(player::BODY);
            EXPECT_TRUE(
                waitUntil([&] { return player_->showsButton(button, player::Look::normal); }));
        }
    }
}

TEST_F(IdleTest, APressStaysWithItsButton) {
    moveTo(player::BUTTONS[player::minimise].middle());
    pointer_.press();
    EXPECT_TRUE(
        waitUntil([&] { return player_->showsButton(player::minimise, player::Look::pressed); }));
    // Over another button and off the window nothing changes, and the release still counts.
    moveTo(player::BUTTONS[player::close].middle());
    moveTo({-20, -20});
    EXPECT_TRUE(player_->showsButton(player::minimise, player::Look::pressed));
    EXPECT_TRUE(player_->showsButton(player::close, player::Look::normal));
    pointer_.release();
    EXPECT_TRUE(waitUntil([&] { return player_->window().isMinimised(); }));
}

/// Every click changes the volume by one step, and the status line says so.
struct VolumeStep {
    Rectangle place;
    int button;
    const char* status;
};

TEST_F(IdleTest, VolumeStepsWithEachMouseButton) {
    constexpr VolumeStep steps[] = {
        {player::VOLUME, 1, "60% hlasitost"}, {player::VOLUME, 3, "50% hlasitost"},
        {player::VOLUME, 2, "40% hlasitost"}, {player::STATUS, 1, "50% hlasitost"},
        {player::STATUS, 3, "40% hlasitost"}, {player::STATUS, 2, "30% hlasitost"},
    };
    for (const VolumeStep& step : steps) {
        // The label is as wide as its text, so its left end always belongs to it.
        click({step.place.x + 5, step.place.y + 4}, step.button);
        EXPECT_TRUE(waitUntil([&] { return player_->showsStatus(step.status); })) << step.status;
    }
}

TEST_F(QuickClicksTest, VolumeStopsAtItsBounds) {
    const auto expectStep = [this](int button, const char* status) {
        click(player::VOLUME.middle(), button);
        EXPECT_TRUE(waitUntil([&] { return player_->showsStatus(status); })) << status;
    };
    for (const char* status : {"60% hlasitost", "70% hlasitost", "80% hlasitost", "90% hlasitost",
                               "100% hlasitost", "100% hlasitost"}) {
        expectStep(1, status);
    }
    expectStep(3, "90% hlasitost");
}

TEST_F(QuickClicksTest, AllCount) {
    for (int round = 0; round < 10; ++round) {
        for (int i = 0; i < 5; ++i) {
            click(player::VOLUME.middle());
        }
        EXPECT_TRUE(waitUntil([&] { return player_->showsStatus("100% hlasitost"); }));
        for (int i = 0; i < 5; ++i) {
            click(player::VOLUME.middle(), 3);
        }
        EXPECT_TRUE(waitUntil([&] { return player_->showsStatus("50% hlasitost"); }));
    }
}

} // namespace

} // namespace support
