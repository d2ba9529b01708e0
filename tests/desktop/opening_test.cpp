// The dialog, and the file chosen in it.
#include "tests/desktop/playing_test.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <sys/resource.h>

namespace support {

namespace {

class OpeningTest : public PlayingTest {
protected:
    /// A file that is no music, whatever its name says.
    [[nodiscard]] std::string textFile() const {
        std::string path = folder_.file("words.mp3");
        writeFile(path, "These are words.\n");
        return path;
    }

    /// Waits for the box that refuses the file, confirms it and cancels the next dialog.
    void expectRefusal() {
        const auto box = waitForMessageBox();
        ASSERT_TRUE(box) << "no message box";
        answer(*box, "Return");
        const auto dialog = waitForDialog();
        ASSERT_TRUE(dialog) << "the dialog doesn't come again";
        answer(*dialog, "Escape");
    }
};

TEST_F(OpeningTest, CancellingChangesNothing) {
    for (int time = 0; time < 2; ++time) {
        openFile("");
        EXPECT_TRUE(waitUntil([&] { return player_->showsIdleLook(); }));
    }
}

TEST_F(OpeningTest, CancellingWhilePlayingChangesNothing) {
    playFile(20);
    openFile("");
    EXPECT_TRUE(waitUntil([&] { return player_->showsPlayingLook(); }));
    EXPECT_TRUE(waitUntil([&] { return heardPlace().value_or(0) > 0.5; }));
}

TEST_F(OpeningTest, OtherFilesAreRefused) {
    openFile(textFile());
    expectRefusal();
    EXPECT_TRUE(waitUntil([&] { return player_->showsIdleLook(); }));
}

TEST_F(OpeningTest, ARefusedFileEndsWhatPlays) {
    playFile(20);
    openFile(textFile());
    expectRefusal();
    EXPECT_TRUE(waitUntil([&] { return player_->showsIdleLook(); }));
    EXPECT_TRUE(recording_->waitForSilence());
}

TEST_F(OpeningTest, AfterARefusalAnotherFileCanBeChosen) {
    const std::string music = folder_.file("music.mp3");
    samples_ = makeFile(music, 20);
    openFile(textFile());
    const auto box = waitForMessageBox();
    ASSERT_TRUE(box);
    answer(*box, "Return");
    chooseFile(music);
    EXPECT_TRUE(waitUntil([&] { return player_->showsPlayingLook(); }));
    EXPECT_TRUE(waitUntil([&] { return player_->showsRunningTime("00:01"); }));
}

TEST_F(OpeningTest, TheContentCountsAndNotTheName) {
    const std::string path = folder_.file("music.txt");
    samples_ = makeFile(path, 5);
    openFile(path);
    EXPECT_TRUE(waitUntil([&] { return player_->showsPlayingLook(); }));
}

TEST_F(OpeningTest, PathsMayHoldAnyLetters) {
    const std::string folder = folder_.file("Písničky „Žluťoučký kůň“");
    std::filesystem::create_directory(folder);
    const std::string path = folder + "/01 – ďábelské ódy & café ♪.mp3";
    samples_ = makeFile(path, 5);
    openFile(path);
    EXPECT_TRUE(waitUntil([&] { return player_->showsPlayingLook(); }));
}

TEST_F(OpeningTest, TheNextDialogStartsInTheLastFilesFolder) {
    const std::string folder = folder_.file("music");
    std::filesystem::create_directory(folder);
    samples_ = makeFile(folder + "/one.mp3", 20);
    const Samples other = makeFile(folder + "/two.mp3", 5);
    openFile(folder + "/one.mp3");
    ASSERT_TRUE(waitUntil([&] { return player_->showsLength("00:20"); }));
    openFile("two.mp3");
    EXPECT_TRUE(waitUntil([&] { return player_->showsLength("00:05"); }));
}

TEST_F(OpeningTest, TheDialogComesThoughOneDescriptorIsFree) {
    player_->process().terminate();
    rlimit usual{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &usual), 0);
    const rlimit few{16,
                     usual.rlim_max}; // most for the processes that the test starts from here on
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
    player_ = std::make_unique<Player>(display_, folder_.file("program"), environment());
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &usual), 0);
    ASSERT_TRUE(player_->waitUntilShown()) << player_->messages();
    // All that are open, and one more. The last to open some is the thread of the message bus.
    const std::filesystem::path process = "/proc/" + std::to_string(player_->process().pid());
    ASSERT_TRUE(waitUntil([&] {
        const std::filesystem::directory_iterator threads(process / "task");
        return std::any_of(begin(threads), end(threads), [](const auto& thread) {
            return readFile((thread.path() / "comm").string()).starts_with("QDBus");
        });
    }));
    const auto count = [&] {
        return std::distance(std::filesystem::directory_iterator(process / "fd"), {});
    };
    auto open = count();
    ASSERT_TRUE(waitUntil([&] { // until no more are opened
        open = count();
        return !waitUntil([&] { return count() != open; }, std::chrono::milliseconds(500));
    }));
    const rlimit almostNone{static_cast<rlim_t>(open) + 1, usual.rlim_max};
    ASSERT_EQ(prlimit(player_->process().pid(), RLIMIT_NOFILE, &almostNone, nullptr), 0);
    click(player::LOGO.middle());
    const auto dialog = waitForDialog();
    ASSERT_TRUE(dialog);
    answer(*dialog, "Escape");
    // The click reaches the window when the dialog no longer blocks it.
    ASSERT_TRUE(waitUntil([&] { return player_->window().isActive(); }));
    click(player::close);
    EXPECT_EQ(player_->process().waitForExit(), 0);
}

TEST_F(OpeningTest, OtherMouseButtonsOnTheLogoOpenNothing) {
    click(player::LOGO.middle(), 2);
    click(player::LOGO.middle(), 3);
    // The clicks have been served when a later move has been served. The pointer moves more than
    // once, because the window manager's grab of the buttons may swallow a single move.
    const Rectangle& close = player::BUTTONS[player::close];
    EXPECT_TRUE(waitUntil([&] {
        moveTo(close.middle());
        moveTo({close.x + 3, close.y + 3});
        return player_->showsButton(player::close, player::Look::hover);
    }));
    EXPECT_FALSE(findWindow(display_, [](const Window& window) {
        return window.isShown() && window.title() == player::DIALOG_TITLE;
    }));
}

/// The whole way under each window manager and without one.
class WholeWayTest : public PlayingTest, public testing::WithParamInterface<std::string> {
protected:
    WholeWayTest() : PlayingTest({.windowManager = GetParam()}) {}
};

TEST_P(WholeWayTest, OpensPlaysPausesSeeksRefusesAndCloses) {
    EXPECT_TRUE(waitUntil([&] { return player_->showsIdleLook(); }));
    playFile(20);
    const auto place = heardPlace();
    ASSERT_TRUE(place);
    EXPECT_LT(*place, 5);

    click(player::pause);
    EXPECT_TRUE(waitUntil([&] { return player_->showsMark(player::pause); }));
    EXPECT_TRUE(recording_->waitForSilence());
    click(player::play);
    EXPECT_TRUE(waitForSound());

    click(player::BAR.middle());
    EXPECT_TRUE(waitUntil([&] { return player_->showsRunningTime("00:10"); }));

    const std::string words = folder_.file("words.mp3");
    writeFile(words, "These are words.\n");
    openFile(words);
    const auto box = waitForMessageBox();
    ASSERT_TRUE(box);
    answer(*box, "Return");
    chooseFile("");
    EXPECT_TRUE(waitUntil([&] { return player_->showsIdleLook(); }));
    EXPECT_TRUE(recording_->waitForSilence());

    click(player::close);
    EXPECT_EQ(player_->process().waitForExit(), 0);
    EXPECT_EQ(player_->messages(), "");
}

INSTANTIATE_TEST_SUITE_P(Under, WholeWayTest, testing::ValuesIn(desktops({"openbox", "xfwm4", ""})),
                         desktopName);

} // namespace

} // namespace support
