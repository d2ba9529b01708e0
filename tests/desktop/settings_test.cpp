// What the player keeps from one run to the next, and that it keeps it whichever way it ends.
#include "tests/desktop/menu.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace support {

namespace {

class SettingsTest : public MenuTest {
protected:
    explicit SettingsTest(const DisplayOptions& options = {}) : MenuTest(options) {}

    [[nodiscard]] std::string path() const { return folder_.file("program/MP3.ini"); }
    [[nodiscard]] std::string settings() const { return readFile(path()); }

    /// The player has ended, and all that it has written is the settings file: nothing else beside
    /// the program, nothing in the user's home.
    void expectNothingElseWritten() const {
        for (const auto& entry : std::filesystem::directory_iterator(folder_.file("program"))) {
            const std::string name = entry.path().filename();
            EXPECT_TRUE(name == "MP3.ini" || name == "zvonivec" || name == "messages") << name;
        }
        for (const auto& entry : std::filesystem::recursive_directory_iterator(display_.home())) {
            ADD_FAILURE() << entry.path();
        }
    }
    void endPlayer() {
        player_->process().signal(SIGTERM);
        ASSERT_EQ(player_->process().waitForExit(), 0);
    }
    /// Ends the player, puts a settings file in its place and starts it again.
    void startWith(const std::string& bytes) {
        endPlayer();
        writeFile(path(), bytes);
        startPlayer();
    }
    [[nodiscard]] bool becomesPlacedAt(Point place) const {
        return waitUntil([&] {
            const Rectangle now = player_->window().place();
            return now.x == place.x && now.y == place.y;
        });
    }
    void dragTo(Point place) {
        const Rectangle before = player_->window().place();
        const Point from = player_->onScreen(player::BODY);
        moveTo(player::BODY);
        pointer_.press();
        if (display_.hasWindowManager()) {
            ASSERT_TRUE(waitUntil([&] { return player_->window().isActive(); }));
        }
        pointer_.moveTo({from.x + place.x - before.x, from.y + place.y - before.y});
        pointer_.release();
        ASSERT_TRUE(becomesPlacedAt(place));
    }
};

TEST_F(SettingsTest, TheFirstRunIsCentredAndCreatesTheFile) {
    EXPECT_TRUE(becomesPlacedAt({(1280 - player::WIDTH + 1) / 2, (800 - player::HEIGHT) / 2}));
    EXPECT_FALSE(std::filesystem::exists(path()));
    endPlayer();
    EXPECT_EQ(settings(),
              "[General]\r\nLeft=7080\r\nTop=3480\r\nOnTop=0\r\nRepeat=1\r\nVolume=50\r\n");
    expectNothingElseWritten();
}

TEST_F(SettingsTest, NothingElseIsWrittenWhateverTheUserDoes) {
    const std::string file = folder_.file("noise.mp3");
    ASSERT_FALSE(makeFile(file, 20).empty());
    openFile("");
    ASSERT_TRUE(waitUntil([&] { return player_->window().isActive(); }));
    openFile(file);
    ASSERT_TRUE(waitUntil([&] { return player_->showsPlayingLook(); }));
    choose(menu::PROPERTIES);
    const auto box = waitForWindowWithKeyboard([&](const Window& window) {
        return window.title() == std::string(player::TITLE) + " - vlastnosti souboru MP3";
    });
    ASSERT_TRUE(box);
    answer(*box, "Return");
    choose(menu::OPEN);
    chooseFile("");
    ASSERT_TRUE(waitUntil([&] { return player_->window().isActive(); }));
    click(player::close);
    ASSERT_EQ(player_->process().waitForExit(), 0);
    EXPECT_TRUE(std::filesystem::exists(path()));
    expectNothingElseWritten();
}

TEST_F(SettingsTest, EverythingComesBack) {
    dragTo({200, 100});
    click(player::VOLUME.middle());
    ASSERT_TRUE(waitUntil([&] { return player_->showsStatus("60% hlasitost"); }));
    choose(menu::ON_TOP);
    ASSERT_TRUE(waitUntilMenuIsGone());
    choose(menu::REPEAT);
    ASSERT_TRUE(waitUntilMenuIsGone());
    click(player::close);
    ASSERT_EQ(player_->process().waitForExit(), 0);
    EXPECT_EQ(settings(),
              "[General]\r\nLeft=3000\r\nTop=1500\r\nOnTop=1\r\nRepeat=0\r\nVolume=60\r\n");

    startPlayer();
    EXPECT_TRUE(becomesPlacedAt({200, 100}));
    EXPECT_TRUE(waitUntil([&] { return player_->showsStatus("60% hlasitost"); }));
    EXPECT_TRUE(waitUntil([&] { return player_->window().hasState("_NET_WM_STATE_ABOVE"); }));
    const std::string file = folder_.file("noise.mp3");
    ASSERT_FALSE(makeFile(file, 2).empty());
    openFile(file);
    EXPECT_TRUE(waitUntil([&] { return player_->showsMark(player::play); }));
    // Without repeat it ends.
    EXPECT_TRUE(waitUntil([&] { return player_->showsMark(player::stop); }));
    choose(menu::ON_TOP);
    ASSERT_TRUE(waitUntilMenuIsGone());
    endPlayer();
    EXPECT_EQ(settings(),
              "[General]\r\nLeft=3000\r\nTop=1500\r\nOnTop=0\r\nRepeat=0\r\nVolume=60\r\n");
}

TEST_F(SettingsTest, RubbishIsNoReasonForAMessage) {
    startWith("[General]\nLeft=abc\nTop=1500\nVolume=abc\nOnTop=7\n\x01\xFF\xFE");
    EXPECT_EQ(player_->messages(), "");
    EXPECT_TRUE(waitUntil([&] { return player_->showsIdleLook(); }));
    EXPECT_EQ(player_->window().place().y, 100);
    EXPECT_FALSE(findWindow(display_, [&](const Window& window) {
        return window.pid() == player_->process().pid() && window.isShown() &&
               !(window == player_->window());
    }));
}

TEST_F(SettingsTest, AFolderOrAHugeFileInItsPlaceIsNoReasonForAMessage) {
    endPlayer();
    std::filesystem::remove(path());
    std::filesystem::create_directory(path());
    startPlayer();
    EXPECT_TRUE(waitUntil([&] { return player_->showsStatus("50% hlasitost"); }));
    endPlayer();
    EXPECT_EQ(player_->messages(), "");
    EXPECT_TRUE(std::filesystem::is_directory(path()));

    std::filesystem::remove(path());
    writeFile(path(), "");
    std::filesystem::resize_file(path(), std::uintmax_t{1} << 30U);
    startPlayer();
    EXPECT_TRUE(waitUntil([&] { return player_->showsStatus("50% hlasitost"); }));
    endPlayer();
    EXPECT_EQ(player_->messages(), "");
    const std::string written =
        "[General]\r\nVolume=50\r\nRepeat=1\r\nOnTop=0\r\nTop=3480\r\nLeft=7080\r\n";
    EXPECT_EQ(std::filesystem::file_size(path()), (std::uintmax_t{1} << 30U) + written.size());
    std::ifstream file(path(), std::ios::binary);
    std::string beginning(written.size(), ' ');
    file.read(beginning.data(), static_cast<std::streamsize>(beginning.size()));
    EXPECT_EQ(beginning, written);
}

TEST_F(SettingsTest, TheUsersDecimalCommaIsReadAsWellAsThePoint) {
    for (const char* left : {"1507,5", "1507.5"}) {
        startWith("[General]\nLeft=" + std::string(left) + "\nTop=1500\n");
        EXPECT_TRUE(becomesPlacedAt({101, 100})) << left;
    }
}

TEST_F(SettingsTest, AMinimisedPlayerKeepsItsStoredPosition) {
    startWith("[General]\nLeft=3000\nTop=1500\nOnTop=0\nRepeat=1\nVolume=50\n");
    dragTo({400, 300});
    click(player::VOLUME.middle());
    ASSERT_TRUE(waitUntil([&] { return player_->showsStatus("60% hlasitost"); }));
    click(player::minimise);
    ASSERT_TRUE(waitUntil([&] { return player_->window().isMinimised(); }));
    endPlayer();
    EXPECT_EQ(settings(), "[General]\nLeft=3000\nTop=1500\nOnTop=0\nRepeat=1\nVolume=60\n");
}

TEST_F(SettingsTest, AMinimisedPlayerWhoseWindowManagerDiedSavesItsPlace) {
    startWith("[General]\nLeft=3000\nTop=1500\nOnTop=0\nRepeat=1\nVolume=50\n");
    dragTo({400, 300});
    click(player::minimise);
    ASSERT_TRUE(waitUntil([&] { return player_->window().isMinimised(); }));
    display_.killWindowManager();
    ASSERT_TRUE(waitUntil([&] { return player_->window().isShown(); }));
    endPlayer();
    EXPECT_EQ(settings(), "[General]\nLeft=6000\nTop=4500\nOnTop=0\nRepeat=1\nVolume=50\n");
}

TEST_F(SettingsTest, AreSavedThoughTheTerminalHasGoneAndTheDisplayGoes) {
    endPlayer();
    // The player's messages go to a pipe whose reader then ends.
    const std::string messages = folder_.file("program/messages");
    std::filesystem::remove(messages);
    ASSERT_EQ(mkfifo(messages.c_str(), 0600), 0);
    const int reader = open(messages.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    startPlayer();
    std::filesystem::remove(messages);
    close(reader);
    dragTo({300, 150});
    display_.killServer(); // the toolkit writes a message and ends the process
    EXPECT_EQ(player_->process().waitForExit(), 1);
    EXPECT_TRUE(settings().starts_with("[General]\r\nLeft=4500\r\nTop=2250\r\n")) << settings();
}

TEST_F(SettingsTest, AFileSizeLimitOfZeroKeepsTheOldOnes) {
    startWith("[General]\nLeft=3000\nTop=1500\nOnTop=0\nRepeat=1\nVolume=50\n");
    const std::string before = settings();
    click(player::VOLUME.middle());
    ASSERT_TRUE(waitUntil([&] { return player_->showsStatus("60% hlasitost"); }));
    const rlimit limit{0, 0};
    ASSERT_EQ(prlimit(player_->process().pid(), RLIMIT_FSIZE, &limit, nullptr), 0);
    player_->process().signal(SIGTERM);
    EXPECT_EQ(player_->process().waitForExit(), 0);
    EXPECT_EQ(settings(), before);
    EXPECT_FALSE(std::filesystem::exists(path() + ".new"));
}

class KillingSignalTest : public SettingsTest, public testing::WithParamInterface<int> {};

TEST_P(KillingSignalTest, KeepsTheOldOnes) {
    startWith("[General]\nLeft=3000\nTop=1500\nOnTop=0\nRepeat=1\nVolume=50\n");
    const std::string before = settings();
    click(player::VOLUME.middle());
    ASSERT_TRUE(waitUntil([&] { return player_->showsStatus("60% hlasitost"); }));
    player_->process().signal(GetParam());
    EXPECT_EQ(player_->process().waitForExit(), 128 + GetParam());
    EXPECT_EQ(settings(), before);
    EXPECT_FALSE(std::filesystem::exists(path() + ".new"));
}

INSTANTIATE_TEST_SUITE_P(By, KillingSignalTest, testing::Values(SIGKILL, SIGUSR1, SIGALRM, SIGXCPU),
                         [](const auto& tested) {
                             return std::string(sigabbrev_np(tested.param));
                         });

TEST_F(SettingsTest, TwoCopiesOfOneFolderShareTheFile) {
    Player second(display_, folder_.file("program"), environment());
    ASSERT_TRUE(second.waitUntilShown());
    player_->process().signal(SIGTERM);
    second.process().signal(SIGTERM);
    EXPECT_EQ(player_->process().waitForExit(), 0);
    EXPECT_EQ(second.process().waitForExit(), 0);
    EXPECT_EQ(settings(),
              "[General]\r\nLeft=7080\r\nTop=3480\r\nOnTop=0\r\nRepeat=1\r\nVolume=50\r\n");
}

// --- Positions off the screen -----------------------------------------------------------------

/// Window managers keep a strip of every window on the screen, whatever the window asks for.
class OffScreenTest : public SettingsTest, public testing::WithParamInterface<std::string> {
protected:
    OffScreenTest() : SettingsTest({.windowManager = GetParam()}) {}
};

TEST_P(OffScreenTest, AWindowComesBackToWhereItWasThoughTheScreenEndsThere) {
    std::vector<Point> places{{1200, 500}, {-200, 100}, {100, 700}};
    if (!display_.hasWindowManager()) {
        places.insert(places.end(), {{5000, -3000}, {-400, 100}, {100, 900}});
    }
    for (const Point place : places) {
        const std::string stored = "[General]\nLeft=" + std::to_string(place.x * 15) +
                                   "\nTop=" + std::to_string(place.y * 15) + "\n";
        startWith(stored);
        EXPECT_TRUE(becomesPlacedAt(place))
            << player_->window().place().x << ' ' << player_->window().place().y;
        endPlayer();
        EXPECT_TRUE(settings().starts_with(stored)) << settings();
        startPlayer();
    }
}

INSTANTIATE_TEST_SUITE_P(Under, OffScreenTest,
                         testing::ValuesIn(desktops({"openbox", "xfwm4", "i3", ""})), desktopName);

/// Managers that minimise no window, and none.
class IgnoredMinimiseTest : public SettingsTest, public testing::WithParamInterface<std::string> {
protected:
    IgnoredMinimiseTest() : SettingsTest({.windowManager = GetParam()}) {}
};

TEST_P(IgnoredMinimiseTest, ThePlayerStaysAsItIs) {
    // i3 puts the window elsewhere at first, because of its frame.
    ASSERT_TRUE(becomesPlacedAt({(1280 - player::WIDTH + 1) / 2, (800 - player::HEIGHT) / 2}));
    const Rectangle start = player_->window().place();
    dragTo({start.x - 60, start.y - 40});
    click(player::minimise);
    ASSERT_TRUE(
        waitUntil([&] { return player_->showsButton(player::minimise, player::Look::normal); }));
    // The strip still moves ten times a second.
    const auto left = [this] { return player_->informationLeft(player::WELCOME); };
    ASSERT_TRUE(waitUntil([&] { return left().has_value(); }, std::chrono::seconds(20)));
    const auto begin = std::chrono::steady_clock::now();
    const int from = left().value_or(0);
    EXPECT_TRUE(
        waitUntil([&] { return left().value_or(from) <= from - 20; }, std::chrono::seconds(20)));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
    endPlayer();
    EXPECT_TRUE(settings().starts_with("[General]\r\nLeft=" + std::to_string((start.x - 60) * 15) +
                                       "\r\nTop=" + std::to_string((start.y - 40) * 15) + "\r\n"))
        << settings();
}

INSTANTIATE_TEST_SUITE_P(Under, IgnoredMinimiseTest, testing::Values("", "i3"), desktopName);

class SecondMonitorIsPrimaryTest : public SettingsTest {
protected:
    SecondMonitorIsPrimaryTest()
        : SettingsTest({.width = 800, .secondWidth = 1000, .secondIsPrimary = true}) {}
};

TEST_F(SecondMonitorIsPrimaryTest, TheFirstRunIsInItsMiddle) {
    EXPECT_TRUE(becomesPlacedAt({800 + (1000 - player::WIDTH + 1) / 2, (800 - player::HEIGHT) / 2}))
        << player_->window().place().x << ' ' << player_->window().place().y;
}

// --- Ways out ---------------------------------------------------------------------------------

struct WayOut {
    const char* name;
    int signal; ///< 0: one of the others
};

void PrintTo(const WayOut& way, std::ostream* out) {
    *out << way.name;
}

class WayOutTest : public SettingsTest, public testing::WithParamInterface<WayOut> {};

TEST_P(WayOutTest, Saves) {
    const std::string way = GetParam().name;
    dragTo({300, 150});
    click(player::VOLUME.middle());
    ASSERT_TRUE(waitUntil([&] { return player_->showsStatus("60% hlasitost"); }));
    if (GetParam().signal != 0) {
        player_->process().signal(GetParam().signal);
    } else if (way == "CloseButton") {
        click(player::close);
    } else if (way == "Menu") {
        choose(menu::QUIT);
    } else if (way == "WindowManager") {
        player_->window().requestClose();
    } else if (way == "MenuOpen") {
        openMenu();
        player_->process().signal(SIGTERM);
    } else if (way == "BoxOpen" || way == "WindowManagerUnderABox") {
        choose(menu::ABOUT);
        ASSERT_TRUE(waitForWindowWithKeyboard([&](const Window& window) {
            return window.title() == std::string("O programu ") + player::TITLE;
        }));
        if (way == "BoxOpen") {
            player_->process().signal(SIGTERM);
        } else {
            player_->window().requestClose();
        }
    }
    bool orderly = true;
    if (way == "DisplayGoes") { // as at the end of some sessions
        display_.killServer();
        orderly = false;
    }
    EXPECT_EQ(player_->process().waitForExit() == 0, orderly);
    EXPECT_EQ(settings(),
              "[General]\r\nLeft=4500\r\nTop=2250\r\nOnTop=0\r\nRepeat=1\r\nVolume=60\r\n");
}

INSTANTIATE_TEST_SUITE_P(By, WayOutTest,
                         testing::Values(WayOut{"CloseButton", 0}, WayOut{"Menu", 0},
                                         WayOut{"WindowManager", 0}, WayOut{"MenuOpen", 0},
                                         WayOut{"BoxOpen", 0}, WayOut{"WindowManagerUnderABox", 0},
                                         WayOut{"DisplayGoes", 0}, WayOut{"SIGTERM", SIGTERM},
                                         WayOut{"SIGINT", SIGINT}, WayOut{"SIGHUP", SIGHUP}),
                         [](const auto& tested) { return std::string(tested.param.name); });

/// The same ways under each window manager, one after the other.
class EndsTest : public SettingsTest, public testing::WithParamInterface<std::string> {
protected:
    EndsTest() : SettingsTest({.windowManager = GetParam()}) {}
};

TEST_P(EndsTest, EveryWayOutSaves) {
    const std::function<void()> ways[] = {
        [&] { player_->process().signal(SIGTERM); },
        [&] { click(player::close); },
        [&] { choose(menu::QUIT); },
        [&] { player_->window().requestClose(); },
        [&] { display_.killServer(); },
    };
    int volume = 50;
    Point place{(1280 - player::WIDTH + 1) / 2, (800 - player::HEIGHT) / 2};
    for (const auto& way : ways) {
        if (volume > 50) {
            startPlayer();
        }
        ASSERT_TRUE(becomesPlacedAt(place)); // i3 puts the window elsewhere at first
        place = {place.x - 30, place.y - 20};
        dragTo(place);
        click(player::VOLUME.middle());
        volume += 10;
        ASSERT_TRUE(waitUntil(
            [&] { return player_->showsStatus(std::to_string(volume) + "% hlasitost"); }));
        way();
        ASSERT_TRUE(player_->process().waitForExit().has_value());
        EXPECT_EQ(settings(), "[General]\r\nLeft=" + std::to_string(place.x * 15) +
                                  "\r\nTop=" + std::to_string(place.y * 15) +
                                  "\r\nOnTop=0\r\nRepeat=1\r\nVolume=" + std::to_string(volume) +
                                  "\r\n");
    }
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(EndsTest);
INSTANTIATE_TEST_SUITE_P(Under, EndsTest, testing::ValuesIn(desktops({})), desktopName);

} // namespace

} // namespace support
