// All ways out of the program, and several copies of it.
#include "tests/desktop/desktop_test.h"

#include <csignal>
#include <filesystem>
#include <set>
#include <sstream>

namespace support {

namespace {

/// Returns the inodes of all abstract sockets whose names begin with the program's title.
std::set<std::string> markers() {
    std::set<std::string> inodes;
    std::istringstream lines(readFile("/proc/net/unix"));
    for (std::string line; std::getline(lines, line);) {
        if (line.find(std::string(" @") + player::TITLE) != std::string::npos) {
            // Columns: number, references, protocol, flags, type, state, inode, name.
            std::istringstream columns(line);
            std::string inode;
            for (int column = 0; column < 7; ++column) {
                columns >> inode;
            }
            inodes.insert(inode);
        }
    }
    return inodes;
}

/// Returns the inode of the marker that a process holds open, or an empty text.
std::string markerOf(pid_t pid) {
    const std::set<std::string> all = markers();
    std::error_code error;
    for (const auto& entry :
         std::filesystem::directory_iterator("/proc/" + std::to_string(pid) + "/fd", error)) {
        const std::string target = std::filesystem::read_symlink(entry, error).string();
        for (const std::string& inode : all) {
            if (target == "socket:[" + inode + "]") {
                return inode;
            }
        }
    }
    return {};
}

class EndingTest : public DesktopTest {
protected:
    void expectOrderlyEnd() {
        EXPECT_EQ(player_->process().waitForExit(), 0);
        EXPECT_FALSE(player_->window().exists());
        EXPECT_EQ(player_->messages(), "");
    }
};

TEST_F(EndingTest, TheCloseButtonEndsTheProgram) {
    click(player::close);
    expectOrderlyEnd();
}

TEST_F(EndingTest, TheCloseButtonEndsAMinimisedAndRestoredProgram) {
    click(player::minimise);
    ASSERT_TRUE(waitUntil([&] { return player_->window().isMinimised(); }));
    player_->window().activate();
    ASSERT_TRUE(waitUntil([&] { return player_->window().isShown(); }));
    click(player::close);
    expectOrderlyEnd();
}

TEST(StartTest, WithoutThreadsTheProgramSaysSoAndEnds) {
    const TemporaryFolder folder;
    const std::string program = folder.file("zvonivec");
    std::filesystem::copy_file(PLAYER_PROGRAM, program);
    writeFile(folder.file("MP3.ini"), "[General]\nVolume=30\n");
    // No thread has room for a stack of this size.
    Process process({"prlimit", "--stack=70368744177664:", program},
                    {.environment = {},
                     .outputFile = {},
                     .errorFile = folder.file("messages"),
                     .directory = {}});
    EXPECT_EQ(process.waitForExit(), 1);
    EXPECT_NE(readFile(folder.file("messages")).find("systém nedává programu vlákna"),
              std::string::npos);
    EXPECT_EQ(readFile(folder.file("MP3.ini")), "[General]\nVolume=30\n");
}

TEST_F(EndingTest, TheWindowManagersCloseRequestEndsTheProgram) {
    player_->window().requestClose();
    expectOrderlyEnd();
}

TEST_F(EndingTest, ACloseRequestEndsAMinimisedProgram) {
    click(player::minimise);
    ASSERT_TRUE(waitUntil([&] { return player_->window().isMinimised(); }));
    player_->window().requestClose();
    expectOrderlyEnd();
}

class EndingBySignalTest : public EndingTest, public testing::WithParamInterface<int> {};

TEST_P(EndingBySignalTest, EndsTheProgram) {
    player_->process().signal(GetParam());
    expectOrderlyEnd();
}

TEST_P(EndingBySignalTest, EndsTheProgramWhileTheDialogIsOpen) {
    click(player::LOGO.middle());
    ASSERT_TRUE(waitForDialog());
    player_->process().signal(GetParam());
    expectOrderlyEnd();
}

TEST_P(EndingBySignalTest, EndsTheProgramWhileAMessageBoxIsOpen) {
    const std::string file = folder_.file("text.mp3");
    writeFile(file, "no music at all");
    openFile(file);
    ASSERT_TRUE(waitForMessageBox());
    player_->process().signal(GetParam());
    expectOrderlyEnd();
}

INSTANTIATE_TEST_SUITE_P(By, EndingBySignalTest, testing::Values(SIGTERM, SIGINT, SIGHUP),
                         [](const auto& parameter) {
                             return std::string(sigabbrev_np(parameter.param));
                         });

TEST_F(EndingTest, ManySignalsEndTheProgramOnce) {
    for (const int number : {SIGTERM, SIGHUP, SIGINT, SIGTERM, SIGTERM}) {
        player_->process().signal(number);
    }
    expectOrderlyEnd();
}

TEST_F(EndingTest, TheProgramSurvivesItsWindowManager) {
    display_.killWindowManager();
    ASSERT_TRUE(waitUntil([&] { return player_->window().isShown(); }));
    moveTo(player::BUTTONS[player::close].middle());
    EXPECT_TRUE(
        waitUntil([&] { return player_->showsButton(player::close, player::Look::hover); }));
    click(player::close);
    expectOrderlyEnd();
}

TEST_F(EndingTest, ASecondCopyRunsBesideTheFirst) {
    Player second(display_, folder_.file("second"), environment());
    ASSERT_TRUE(second.waitUntilShown());
    EXPECT_FALSE(second.window() == player_->window());

    click(player::close); // of the upper window: both are in the same place
    EXPECT_TRUE(
        waitUntil([&] { return player_->process().running() != second.process().running(); }));
    Player& left = second.process().running() ? second : *player_;
    EXPECT_TRUE(left.window().isShown());
    pointer_.click(left.onScreen(player::BUTTONS[player::close].middle()));
    EXPECT_EQ(player_->process().waitForExit(), 0);
    EXPECT_EQ(second.process().waitForExit(), 0);
}

TEST_F(EndingTest, ACopyInTheSameFolderRunsToo) {
    Process::Options options;
    options.environment = environment();
    Process second({folder_.file("program") + "/zvonivec"}, options);
    EXPECT_TRUE(waitUntil([&] {
        return findWindow(display_,
                          [&](const Window& window) {
                              return window.pid() == second.pid() && window.isShown() &&
                                     window.title() == player::TITLE;
                          })
            .has_value();
    }));
    second.signal(SIGTERM);
    EXPECT_EQ(second.waitForExit(), 0);
    EXPECT_TRUE(player_->process().running());
}

TEST_F(EndingTest, AMarkerStandsWhileAProgramRuns) {
    const std::string first = markerOf(player_->process().pid());
    EXPECT_NE(first, "");
    Player second(display_, folder_.file("second"), environment());
    ASSERT_TRUE(second.waitUntilShown());
    const std::string other = markerOf(second.process().pid());
    EXPECT_NE(other, "");
    EXPECT_NE(first, other);

    second.process().signal(SIGKILL);
    second.process().waitForExit();
    EXPECT_TRUE(waitUntil([&] { return !markers().contains(other); }));
    EXPECT_TRUE(markers().contains(first));

    player_->process().signal(SIGTERM);
    player_->process().waitForExit();
    EXPECT_TRUE(waitUntil([&] { return !markers().contains(first); }));
}

} // namespace

} // namespace support
