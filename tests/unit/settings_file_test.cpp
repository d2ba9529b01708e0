// The settings file on the disk: whole at any moment, whatever happens to its writers.
#include "tests/unit/settings_file_test.h"

#include "tests/support/processor_time.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <random>
#include <sched.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <thread>

namespace zvonivec {
namespace {

using std::chrono::milliseconds;

TEST_F(SettingsFile, ReplacesTheFileAndLeavesNothingElse) {
    write("Left", "1");
    write("Left", "2");
    EXPECT_EQ(support::readFile(path_), "[General]\r\nLeft=2\r\n");
    EXPECT_EQ(names(), Names{"MP3.ini"});
}

TEST_F(SettingsFile, AKilledWriterLeavesTheOldOrTheNewFileWhole) {
    // Large enough that a write takes a moment.
    const std::string ballast = "; " + std::string(200000, 'x') + "\r\n[Other]\r\nkeep=1\r\n";
    support::writeFile(path_, ballast + "[General]\r\nLeft=0\r\n");
    std::mt19937 random(3);
    std::uniform_int_distribution<int> pause(0, 3000);
    int leftovers = 0;
    long last = 0;
    const int rounds = support::SLOWNESS > 5 ? 40 : 200; // a sanitizer's processes start slowly
    for (int round = 0; round < rounds; ++round) {
        support::Process writer(
            {SETTINGS_WRITER, path_, "Left", std::to_string(last + 1), "1000000"});
        ASSERT_TRUE(support::waitUntil([&] { return std::stol(read("Left")) > last; }));
        std::this_thread::sleep_for(std::chrono::microseconds(pause(random))); // at any moment
        writer.signal(SIGKILL);
        writer.waitForExit();
        const std::string bytes = support::readFile(path_);
        const long value = std::stol(read("Left"));
        ASSERT_EQ(bytes, ballast + "[General]\r\nLeft=" + std::to_string(value) + "\r\n");
        ASSERT_GT(value, last);
        last = value;
        leftovers += fs::exists(path_ + ".new") ? 1 : 0;
    }
    EXPECT_GT(leftovers, 0) << "no writer was killed in the middle: nothing was shown";
    write("Left", "end");
    EXPECT_EQ(read("Left"), "end");
    EXPECT_EQ(names(), Names{"MP3.ini"});
}

TEST_F(SettingsFile, WritersAtTheSameTimeLeaveAWholeFileAndLoseNothing) {
    support::writeFile(path_, "[General]\r\n");
    constexpr int writes = 200;
    const char* const keys[] = {"Left", "Top", "OnTop", "Repeat", "Volume", "a", "b", "c"};
    std::vector<support::Process> writers;
    for (const char* key : keys) {
        writers.emplace_back(
            std::vector<std::string>{SETTINGS_WRITER, path_, key, "0", std::to_string(writes)});
    }
    int seen = 0;
    const auto running = [&] {
        return std::ranges::any_of(writers,
                                   [](support::Process& writer) { return writer.running(); });
    };
    while (running()) {
        const std::string bytes = support::readFile(path_);
        ASSERT_TRUE(bytes.starts_with("[General]\r\n"));
        ASSERT_TRUE(bytes.ends_with("\r\n"));
        ++seen;
    }
    EXPECT_GT(seen, 0);
    for (const char* key : keys) {
        EXPECT_EQ(read(key), std::to_string(writes - 1));
    }
    EXPECT_EQ(names(), Names{"MP3.ini"});
}

TEST_F(SettingsFile, AKilledWriterHoldsUpNoOther) {
    const std::string ballast = "; " + std::string(50000, 'x') + "\r\n";
    const auto whole = [&] {
        return ballast + "[General]\r\nLeft=" + read("Left") + "\r\nTop=" + read("Top") + "\r\n";
    };
    support::writeFile(path_, ballast + "[General]\r\nLeft=0\r\nTop=0\r\n");
    support::Process other({SETTINGS_WRITER, path_, "Top", "1", "1000000"});
    std::mt19937 random(4);
    std::uniform_int_distribution<int> pause(0, 3000);
    long left = 0;
    long top = 0;
    for (int round = 0; round < 50; ++round) {
        support::Process writer(
            {SETTINGS_WRITER, path_, "Left", std::to_string(left + 1), "1000000"});
        ASSERT_TRUE(support::waitUntil([&] { return std::stol(read("Left")) > left; }));
        std::this_thread::sleep_for(std::chrono::microseconds(pause(random)));
        writer.signal(SIGKILL);
        writer.waitForExit();
        left = std::stol(read("Left"));
        ASSERT_GE(std::stol(read("Top")), top) << "a value that had been written was lost";
        top = std::stol(read("Top"));
        ASSERT_TRUE(support::waitUntil([&] { return std::stol(read("Top")) > top; }));
        ASSERT_EQ(std::stol(read("Left")), left) << "a value that had been written was lost";
    }
    other.signal(SIGKILL);
    other.waitForExit();
    EXPECT_EQ(support::readFile(path_), whole());
}

TEST_F(SettingsFile, IsOnTheDiskBeforeItGetsItsName) {
    write("Left", "1");
    const std::string calls = folder_.file("calls");
    support::Process::Options options;
    options.outputFile = calls;
    ASSERT_EQ(support::run({SETTINGS_WRITER, path_, "Left", "2", "1"}, options), 0);
    const std::string folder = fs::path(folder_.path()).filename();
    EXPECT_EQ(support::readFile(calls), "flock MP3.ini.new\n"
                                        "fchmod MP3.ini.new\n" // before it has content
                                        "ftruncate MP3.ini.new\n"
                                        "fsync MP3.ini.new\n"
                                        "rename\n"
                                        "fsync " +
                                            folder + "\n");
}

TEST_F(SettingsFile, WhatAKilledWriterLeftIsNotPartOfTheNextFile) {
    support::writeFile(path_ + ".new", "[General]\r\nTop=7\r\n" + std::string(5000, 'x'));
    write("Left", "1");
    EXPECT_EQ(support::readFile(path_), "[General]\r\nLeft=1\r\n");
    EXPECT_EQ(names(), Names{"MP3.ini"});
}

TEST_F(SettingsFile, AFullDiskLeavesTheOldFile) {
    // The process may write no larger files than this, so the rest of a write fails.
    const std::string old = "[General]\r\nLeft=1\r\n; " + std::string(3000, 'x') + "\r\n";
    support::writeFile(path_, old);
    const int result = inChild([&] {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{1000, 1000};
        setrlimit(RLIMIT_FSIZE, &limit);
        write("Left", "2");
        return 0;
    });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(support::readFile(path_), old);
    EXPECT_EQ(names(), Names{"MP3.ini"});
    write("Left", "2");
    EXPECT_EQ(read("Left"), "2");
}

TEST_F(SettingsFile, AFullFileSystemLeavesTheOldFile) {
    enum Result { kept = 0, noMount = 77, lost = 1, leftOver = 2, notFull = 3, notWritten = 4 };
    const std::string old = "[General]\r\nLeft=1\r\n; " + std::string(3000, 'x') + "\r\n";
    const int result = inChild([&]() -> int {
        const int user = geteuid() == 0 ? 0 : CLONE_NEWUSER;
        if (unshare(CLONE_NEWNS | user) != 0 ||
            mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("tmpfs", folder_.path().c_str(), "tmpfs", 0, "size=12k") != 0) {
            return noMount;
        }
        support::writeFile(path_, old);
        std::string filling(1024, 'f');
        const std::string filler = folder_.file("filler");
        const int file = open(filler.c_str(), O_CREAT | O_WRONLY, 0600);
        while (::write(file, filling.data(), filling.size()) > 0) {
        }
        close(file);
        write("Left", "2");
        if (support::readFile(path_) != old) {
            return lost;
        }
        if (fs::exists(path_ + ".new")) {
            return leftOver;
        }
        fs::remove(filler);
        write("Left", "2");
        return read("Left") == "2" ? kept : notWritten;
    });
    if (result == noMount) {
        GTEST_SKIP() << "this user may not mount anything";
    }
    EXPECT_EQ(result, kept);
}

TEST_F(SettingsFile, AWriterThatHangsIsNotWaitedForLong) {
    write("Left", "1");
    const int other = open((path_ + ".new").c_str(), O_CREAT | O_RDWR, 0600);
    ASSERT_EQ(flock(other, LOCK_EX), 0);
    const auto start = std::chrono::steady_clock::now();
    write("Left", "2");
    const auto took = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(read("Left"), "1");
    EXPECT_LT(took, milliseconds(1500) * support::SLOWNESS);
    close(other); // as its end does
    write("Left", "3");
    EXPECT_EQ(read("Left"), "3");
}

TEST_F(SettingsFile, WithoutLocksNothingIsWrittenAndNothingWaitedFor) {
    write("Left", "1");
    support::Process::Options options;
    options.environment = {{"NO_LOCKS", "1"}};
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(support::run({SETTINGS_WRITER, path_, "Left", "2", "5"}, options), 0);
    const auto took = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(read("Left"), "1");
    EXPECT_LT(took, milliseconds(1000) * support::SLOWNESS);
}

} // namespace
} // namespace zvonivec
