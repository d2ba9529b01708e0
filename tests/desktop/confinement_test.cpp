// What code that got hold of the player could do.
#include "tests/desktop/desktop_test.h"

#include <filesystem>
#include <linux/landlock.h>
#include <set>
#include <sstream>
#include <string>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

namespace support {

namespace {

/// Names of attempts, by what became of them.
struct Outcome {
    std::set<std::string> done;
    std::set<std::string> refused;
};

/// Reads the lines of tests/desktop/attempts.cpp.
Outcome outcomeOf(const std::string& messages) {
    const std::string start = "attempt ";
    Outcome outcome;
    std::istringstream lines(messages);
    for (std::string line; std::getline(lines, line);) {
        const auto colon = line.find(": ");
        if (line.starts_with(start) && colon != std::string::npos) {
            const std::string name = line.substr(start.size(), colon - start.size());
            (line.ends_with(": done") ? outcome.done : outcome.refused).insert(name);
        }
    }
    return outcome;
}

class ConfinementTest : public DesktopTest {
protected:
    void SetUp() override {
        DesktopTest::SetUp();
        makeHome();
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::string(home_ + "/agent").copy(address.sun_path, sizeof address.sun_path - 1);
        agent_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        ASSERT_EQ(bind(agent_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        ASSERT_EQ(listen(agent_, 4), 0);
    }

    void TearDown() override {
        close(agent_);
        DesktopTest::TearDown();
    }

    void makeHome() const {
        std::filesystem::create_directories(home_ + "/.ssh");
        std::filesystem::create_directories(home_ + "/.config/autostart");
        writeFile(home_ + "/document", "text");
    }

    [[nodiscard]] Process::Environment withAttempts() const {
        Process::Environment all = environment();
        all.emplace_back("HOME", home_);
        all.emplace_back("LD_PRELOAD", ATTEMPTS_LIBRARY);
        return all;
    }

    /// Has a process make the attempts, and waits for their end.
    static Outcome attempt(Process& process, const std::function<std::string()>& messages) {
        EXPECT_TRUE(
            waitUntil([&] { return messages().find("attempts: ready\n") != std::string::npos; }));
        process.signal(SIGUSR2);
        EXPECT_TRUE(waitUntil([&] {
            return messages().find("attempts: all made\n") != std::string::npos;
        })) << messages();
        return outcomeOf(messages());
    }

    std::string home_ = folder_.file("home");

private:
    int agent_ = -1;
};

/// Returns the version of the kernel's Landlock, or less than 1 without one.
long landlockVersion() {
    return syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
}

TEST_F(ConfinementTest, WhatAnAttackerTriesIsRefused) {
    if (landlockVersion() < 1) {
        GTEST_SKIP() << "This kernel has no Landlock";
    }
    Player confined(display_, folder_.file("program"), withAttempts());
    ASSERT_TRUE(confined.waitUntilShown());
    const Outcome outcome = attempt(confined.process(), [&] { return confined.messages(); });
    // docs/security.md says of these why they can't be refused.
    std::set<std::string> known{"read a document", "change a document's permissions",
                                "connect to a local socket", "make a file beside the player"};
    constexpr long versionWithSignals = 6;
    if (landlockVersion() < versionWithSignals) {
        known.insert("send another process a signal");
    }
    EXPECT_EQ(outcome.done, known);
    EXPECT_GE(outcome.refused.size(), 30U);
    EXPECT_EQ(readFile(home_ + "/document"), "text");
    EXPECT_TRUE(confined.showsIdleLook());
    EXPECT_TRUE(confined.process().running());
}

TEST_F(ConfinementTest, TheSameSucceedsInAnotherProgram) {
    const std::string messages = folder_.file("other");
    Process other(
        {"sleep", "60"},
        {.environment = withAttempts(), .outputFile = {}, .errorFile = messages, .directory = {}});
    const Outcome outcome = attempt(other, [&] { return readFile(messages); });
    // What an ordinary user may do everywhere.
    for (const char* name :
         {"append to ~/.bashrc", "make ~/.ssh/authorized_keys", "make an autostart entry",
          "make a file in /tmp", "make a file in /var/tmp", "make a folder", "make a symbolic link",
          "make a pipe", "link a document", "rename a document", "empty a document", "run a shell",
          "run a program from memory", "send another process a signal", "open an internet socket",
          "open a datagram socket", "open a socket to the kernel", "remove a document"}) {
        EXPECT_TRUE(outcome.done.contains(name)) << name;
    }
}

} // namespace

} // namespace support
