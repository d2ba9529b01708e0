// The player in Wayland sessions, with and without an X server. Everything is seen on the screen:
// there is no server that could be asked for windows.
#include "tests/desktop/menu.h"
#include "tests/support/wayland_session.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>

namespace support {

namespace {

class WaylandTest : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        ASSERT_TRUE(display_.ok()) << display_.problem();
        ASSERT_TRUE(session_.ok()) << session_.problem();
        ASSERT_TRUE(sound_.running());
        // Weston learns of steps alone. In the corners its pointer meets this one.
        pointer_.moveTo({0, 0});
        pointer_.moveTo({display_.width() - 1, display_.height() - 1});
        moveAway();
        ground_.emplace(display_);
        startPlayer();
    }

    void TearDown() override {
        if (HasFailure() && player_) {
            std::string name = testing::UnitTest::GetInstance()->current_test_info()->name();
            std::ranges::replace(name, '/', '-');
            const std::string file = std::string(FAILURES_FOLDER) + "/Wayland." + name + ".png";
            run({"mkdir", "-p", FAILURES_FOLDER});
            save(Screenshot(display_), file);
            std::cout << file << '\n' << player_->messages();
        }
    }

    void startPlayer() {
        Process::Environment environment = session_.environment();
        for (const auto& variable : sound_.environment()) {
            environment.push_back(variable);
        }
        player_ = std::make_unique<Player>(display_, folder_.file("program"), environment);
        ASSERT_TRUE(
            waitUntil([this] { return findPlayer().has_value(); }, std::chrono::seconds(30)))
            << player_->messages();
    }
    [[nodiscard]] std::string settings() const { return readFile(folder_.file("program/MP3.ini")); }
    void waitForSignalHandler() const {
        const std::string status = "/proc/" + std::to_string(player_->process().pid()) + "/status";
        ASSERT_TRUE(waitUntil([&] {
            const std::string text = readFile(status);
            const std::size_t caught = text.find("SigCgt:");
            return caught != std::string::npos &&
                   (std::stoull(text.substr(caught + 8), nullptr, 16) >> (SIGTERM - 1U) & 1U) != 0;
        }));
    }
    void endPlayer() {
        waitForSignalHandler();
        player_->process().signal(SIGTERM);
        ASSERT_EQ(player_->process().waitForExit(), 0);
    }

    /// Clicks as slowly as a hand: compositors notice late which window the pointer has come to.
    void click(Point place, int button = 1) const {
        const auto pause = [] { waitUntil([] { return false; }, std::chrono::milliseconds(60)); };
        pointer_.moveTo({place.x - 3, place.y - 1});
        pause();
        pointer_.moveTo(place);
        pause();
        pointer_.press(button);
        pause();
        pointer_.release(button);
    }
    void moveAway() const { pointer_.moveTo({display_.width() - 1, 1}); }

    /// Returns the window's top left corner, where the screen shows the player's buttons.
    [[nodiscard]] std::optional<Point> findPlayer() const {
        const Rectangle place{player::BUTTONS[player::minimise].x - 4, 30, 40, 24};
        const Picture buttons = player::idlePicture().part(place);
        const Screenshot screen(display_);
        const auto isThere = [&](int left, int top) {
            for (int y = 0; y < place.height; ++y) {
                for (int x = 0; x < place.width; ++x) {
                    if (screen.at(left + x, top + y) != buttons.at(x, y)) {
                        return false;
                    }
                }
            }
            return true;
        };
        for (int y = 0; y + place.height <= screen.height(); ++y) {
            for (int x = 0; x + place.width <= screen.width(); ++x) {
                if (isThere(x, y)) {
                    return Point{x - place.x, y - place.y};
                }
            }
        }
        return std::nullopt;
    }
    [[nodiscard]] bool becomesPlacedNear(Point place, int tolerance) const {
        return waitUntil([&] {
            const auto now = findPlayer();
            return now && std::abs(now->x - place.x) <= tolerance &&
                   std::abs(now->y - place.y) <= tolerance;
        });
    }
    [[nodiscard]] Point onScreen(Point place) const {
        const Point corner = findPlayer().value_or(Point{});
        return {corner.x + place.x, corner.y + place.y};
    }

    /// Whether the screen shows the menu where it belongs after a click there.
    [[nodiscard]] bool showsMenu(Point pointer) const {
        const Screenshot area(display_, {pointer.x, pointer.y, menu::WIDTH, menu::HEIGHT});
        int back = 0;
        for (int y = 0; y < area.height(); ++y) {
            for (int x = 0; x < area.width(); ++x) {
                back += area.at(x, y) == menu::BACK ? 1 : 0;
            }
        }
        return back > menu::WIDTH * menu::HEIGHT / 2;
    }
    /// Opens the menu and returns the point of the click.
    Point openMenu() {
        const Point place = onScreen(player::BODY);
        click(place, 3);
        // KWin without an X server loses such a click now and then. A user clicks again.
        if (!waitUntil([&] { return showsMenu(place); }, std::chrono::seconds(2))) {
            std::cout << "A second click for the menu\n";
            click(place, 3);
        }
        EXPECT_TRUE(waitUntil([&] { return showsMenu(place); }));
        return place;
    }
    void choose(const menu::Line& line) {
        const Point place = openMenu();
        click(line.place().movedBy(place).middle());
        EXPECT_TRUE(waitUntil([&] { return !showsMenu(place); }));
    }
    [[nodiscard]] bool seesButton(player::Button button, player::Look look) const {
        const auto corner = findPlayer();
        return corner &&
               differentPixels(Screenshot(display_, player::BUTTONS.at(button).movedBy(*corner)),
                               player::buttonPicture(button, look)) == 0;
    }
    /// Returns how many pixels of two pictures of the screen differ.
    [[nodiscard]] static int difference(const Screenshot& one, const Screenshot& other) {
        int different = 0;
        for (int y = 0; y < one.height(); ++y) {
            for (int x = 0; x < one.width(); ++x) {
                different += one.at(x, y) != other.at(x, y) ? 1 : 0;
            }
        }
        return different;
    }
    /// The strip of text slides, so pictures of one state differ by it.
    static constexpr int STRIP = player::INFORMATION.width * player::INFORMATION.height;

    TemporaryFolder folder_;
    Display display_{{.windowManager = ""}};
    WaylandSession session_{display_, GetParam()};
    PulseServer sound_;
    Pointer pointer_{display_};
    Keyboard keyboard_{display_};
    std::optional<Screenshot> ground_; ///< the screen without the player
    std::unique_ptr<Player> player_;
};

/// Mutter's ground flickers a little.
bool isLike(Colour one, Colour other) {
    int difference = 0;
    for (const unsigned shift : {0U, 8U, 16U}) {
        difference = std::max(difference, std::abs(static_cast<int>((one >> shift) & 0xFFU) -
                                                   static_cast<int>((other >> shift) & 0xFFU)));
    }
    return difference < 8;
}

TEST_P(WaylandTest, IsSeenInItsOutline) {
    const Picture idle = player::idlePicture();
    const auto wrongPixels = [&] {
        const Point corner = findPlayer().value_or(Point{});
        // Weston draws a shadow around every window's rectangle.
        const int beside = GetParam().starts_with("weston") ? 0 : 40;
        const Screenshot screen(display_);
        const auto isPlayer = [&](int x, int y) {
            return x >= 0 && y >= 0 && idle.at(x, y).has_value();
        };
        int wrong = 0;
        for (int y = -beside; y < player::HEIGHT + beside; ++y) {
            for (int x = -beside; x < player::WIDTH + beside; ++x) {
                const bool inside = isPlayer(x, y);
                // The edge is smooth, so its pixels are mixed with the ground.
                const bool isEdge =
                    isPlayer(x - 1, y) != inside || isPlayer(x + 1, y) != inside ||
                    isPlayer(x, y - 1) != inside || isPlayer(x, y + 1) != inside ||
                    isPlayer(x - 1, y - 1) != inside || isPlayer(x + 1, y - 1) != inside ||
                    isPlayer(x - 1, y + 1) != inside || isPlayer(x + 1, y + 1) != inside;
                const bool isText = std::ranges::any_of(player::TEXTS, [&](const Rectangle& text) {
                    return text.contains({x, y});
                });
                const Point place{corner.x + x, corner.y + y};
                const Colour expected = inside ? *idle.at(x, y) : ground_->at(place.x, place.y);
                wrong +=
                    !isEdge && !isText && !isLike(screen.at(place.x, place.y), expected) ? 1 : 0;
            }
        }
        return wrong;
    };
    EXPECT_TRUE(waitUntil([&] { return wrongPixels() == 0; })) << wrongPixels();
}

TEST_P(WaylandTest, ADragMovesItAndItsPlaceIsStored) {
    const Point before = findPlayer().value_or(Point{});
    const Point from = onScreen(player::BODY);
    pointer_.moveTo(from);
    pointer_.press();
    // A hand's steps: a compositor that is asked to move the window begins where the pointer is.
    for (int i = 1; i <= 60; ++i) {
        pointer_.moveTo({from.x + 2 * i, from.y + i});
        EXPECT_FALSE(waitUntil([] { return false; }, std::chrono::milliseconds(10)));
    }
    constexpr int behind = 60;
    EXPECT_TRUE(becomesPlacedNear({before.x + 120, before.y + 60}, behind));
    pointer_.release();
    std::optional<Point> rest;
    EXPECT_TRUE(waitUntil([&] {
        rest = findPlayer();
        return rest &&
               !waitUntil([&] { return findPlayer() != rest; }, std::chrono::milliseconds(500));
    }));
    ASSERT_TRUE(rest);
    RecordProperty("behind", before.x + 120 - rest->x);
    std::cout << "Behind the pointer: " << before.x + 120 - rest->x << ' '
              << before.y + 60 - rest->y << '\n';
    // Without a button nothing moves.
    pointer_.moveTo({from.x - 50, from.y - 50});
    moveAway();
    EXPECT_EQ(findPlayer(), rest);
    endPlayer();
    const bool isStored =
        settings().find("Left=" + std::to_string(rest->x * 15) +
                        "\r\nTop=" + std::to_string(rest->y * 15) + "\r\n") != std::string::npos;
    EXPECT_EQ(isStored, session_.hasXServer()) << settings() << rest->x << ' ' << rest->y;
    EXPECT_EQ(settings().find("Left") != std::string::npos, session_.hasXServer());
}

TEST_P(WaylandTest, AStoredPlaceComesBackOrStaysStored) {
    endPlayer();
    const std::string stored = "[General]\r\nLeft=3000\r\nTop=1500\r\n";
    writeFile(folder_.file("program/MP3.ini"), stored);
    startPlayer();
    // The others place every new window themselves.
    if (GetParam() == "mutter_wayland" || GetParam() == "kwin_wayland") {
        EXPECT_TRUE(becomesPlacedNear({200, 100}, 0))
            << findPlayer().value_or(Point{}).x << ' ' << findPlayer().value_or(Point{}).y;
    }
    endPlayer();
    EXPECT_TRUE(settings().starts_with(stored)) << settings();
}

TEST_P(WaylandTest, TheMenuOpensAtThePointerAndCloses) {
    const Point place = openMenu();
    keyboard_.key("Escape");
    EXPECT_TRUE(waitUntil([&] { return !showsMenu(place); }));
    openMenu();
    // On the player's body. A ground without any window, which no desktop has, reports no click.
    click({place.x + 250, place.y});
    EXPECT_TRUE(waitUntil([&] { return !showsMenu(place); }));
    choose(menu::ON_TOP);
    choose(menu::REPEAT);
    endPlayer();
    EXPECT_NE(settings().find("OnTop=1\r\nRepeat=0\r\n"), std::string::npos) << settings();
    EXPECT_EQ(player_->messages(), "");
}

TEST_P(WaylandTest, ADragWithTheRightButtonOpensTheMenu) {
    const Point from = onScreen(player::BODY);
    pointer_.moveTo(from);
    pointer_.press(3);
    for (int i = 1; i <= 60; ++i) {
        pointer_.moveTo({from.x + i, from.y + i});
        EXPECT_FALSE(waitUntil([] { return false; }, std::chrono::milliseconds(10)));
    }
    pointer_.release(3);
    const Point to{from.x + 60, from.y + 60};
    if (session_.hasXServer()) {
        EXPECT_TRUE(waitUntil([&] { return showsMenu(to); }));
    } else {
        // The compositor keeps the release, and mutter goes on moving until the left button's.
        if (GetParam().starts_with("mutter")) {
            click(to);
        }
        EXPECT_TRUE(waitUntil([&] {
            click(to, 3);
            return waitUntil([&] { return showsMenu(to); }, std::chrono::seconds(1));
        }));
    }
}

TEST_P(WaylandTest, TheAboutBoxOpensAndEnds) {
    const Screenshot before(display_);
    choose(menu::ABOUT);
    moveAway();
    EXPECT_TRUE(waitUntil([&] { return difference(Screenshot(display_), before) > 8 * STRIP; }));
    keyboard_.key("Return");
    EXPECT_TRUE(waitUntil([&] { return difference(Screenshot(display_), before) < STRIP; }));
}

TEST_P(WaylandTest, AFileIsOpenedByTheDialogAndPlays) {
    const std::string file = folder_.file("noise.mp3");
    ASSERT_TRUE(encodeNoise(file, 20, {"-b", "128"}));
    const Screenshot before(display_);
    click(onScreen(player::LOGO.middle()));
    moveAway();
    ASSERT_TRUE(waitUntil([&] { return difference(Screenshot(display_), before) > 8 * STRIP; }));
    keyboard_.type(file);
    keyboard_.key("Return");
    EXPECT_TRUE(waitUntil([&] { return seesButton(player::pause, player::Look::normal); }));
}

TEST_P(WaylandTest, CanBeMinimised) {
    click(onScreen(player::BUTTONS.at(player::minimise).middle()));
    moveAway();
    if (GetParam().starts_with("sway")) { // which minimises no window
        EXPECT_TRUE(waitUntil([&] { return seesButton(player::minimise, player::Look::normal); }));
    } else {
        EXPECT_TRUE(waitUntil([&] { return !findPlayer(); }));
    }
    endPlayer();
}

TEST_P(WaylandTest, EveryWayOutSavesTheSettings) {
    std::vector<std::function<void()>> ways{
        [&] { player_->process().signal(SIGTERM); },
        [&] { click(onScreen(player::BUTTONS.at(player::close).middle())); },
        [&] {
            const Point place = openMenu();
            click(menu::QUIT.place().movedBy(place).middle());
        },
    };
    if (session_.hasXServer()) { // otherwise the toolkit ends the process without a word
        ways.emplace_back([&] { session_.kill(); });
    }
    for (const auto& way : ways) {
        std::filesystem::remove(folder_.file("program/MP3.ini"));
        if (!player_->process().running()) {
            startPlayer();
        }
        waitForSignalHandler();
        way();
        EXPECT_TRUE(player_->process().waitForExit().has_value());
        EXPECT_NE(settings().find("Volume=50\r\n"), std::string::npos) << settings();
        moveAway(); // the next player lights no button
        // Mutter lets a window fade away.
        EXPECT_TRUE(!session_.isRunning() || waitUntil([&] { return !findPlayer(); }));
    }
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(WaylandTest);
INSTANTIATE_TEST_SUITE_P(In, WaylandTest, testing::ValuesIn(sessions()), desktopName);

} // namespace

} // namespace support
