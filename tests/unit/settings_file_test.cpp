// The settings file on the disk: whole at any moment, whatever happens to its writers.

#include "platform/modDeklarace.h"
#include "platform/whole_file.h"
#include "tests/support/process.h"
#include "tests/support/processor_time.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <grp.h>
#include <gtest/gtest.h>
#include <random>
#include <sched.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace zvonivec {
namespace {

namespace fs = std::filesystem;
using modDeklarace::GetPrivateProfileStringA;
using modDeklarace::WritePrivateProfileStringA;
using std::chrono::milliseconds;

class SettingsFile : public testing::Test {
protected:
    std::string read(const std::string& key) const {
        return GetPrivateProfileStringA("General", key, "DEF", 33001, path_);
    }
    void write(const std::string& key, const std::string& value) const {
        WritePrivateProfileStringA("General", key, value, path_);
    }
    /// Everything in the folder, by name.
    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const auto& entry : fs::directory_iterator(folder_.path())) {
            all.push_back(entry.path().filename().string());
        }
        std::ranges::sort(all);
        return all;
    }
    using Names = std::vector<std::string>;

    support::TemporaryFolder folder_;
    std::string path_ = folder_.file("MP3.ini");
};

/// A device's name. Root gets one that nobody misses when a test damages it; anybody else can't
/// damage the system's.
std::string deviceIn(const support::TemporaryFolder& folder) {
    if (geteuid() != 0) {
        return "/dev/zero";
    }
    constexpr dev_t zero = 1U << 8U | 5U;
    EXPECT_EQ(mknod(folder.file("device").c_str(), S_IFCHR | 0666U, zero), 0);
    return folder.file("device");
}

/// Runs a function in a child process; its result.
int inChild(const std::function<int()>& function) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(function());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

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
                                        "fchmod MP3.ini.new\n" // before there is anything to read
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
    // The process may write files of this size and no larger: the rest of a write fails.
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

TEST_F(SettingsFile, KeepsPermissions) {
    for (const auto mode : {fs::perms(0600), fs::perms(0644), fs::perms(0660)}) {
        write("Left", std::to_string(static_cast<int>(mode)));
        fs::permissions(path_, mode);
        write("Left", "1");
        EXPECT_EQ(fs::status(path_).permissions(), mode);
    }
    fs::remove(path_);
    const mode_t mask = umask(027);
    write("Left", "1");
    umask(mask);
    EXPECT_EQ(fs::status(path_).permissions(), fs::perms(0640));
}

TEST_F(SettingsFile, KeepsOwnerAndGroup) {
    constexpr uid_t alice = 1001;
    constexpr uid_t bob = 1002;
    constexpr gid_t players = 2001;
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can give files away";
    }
    const auto status = [this] {
        struct stat found {};
        EXPECT_EQ(stat(path_.c_str(), &found), 0);
        return found;
    };
    write("Left", "1");
    ASSERT_EQ(chown(path_.c_str(), alice, players), 0);
    fs::permissions(path_, fs::perms(0660));
    write("Left", "2");
    EXPECT_EQ(status().st_uid, alice);
    EXPECT_EQ(status().st_gid, players);

    // A member of the group can't give the file to its owner, but leave it to the group.
    fs::permissions(folder_.path(), fs::perms(0777));
    EXPECT_EQ(inChild([&] {
                  if (setgroups(1, &players) != 0 || setgid(bob) != 0 || setuid(bob) != 0) {
                      return 1;
                  }
                  write("Left", "3");
                  return 0;
              }),
              0);
    EXPECT_EQ(read("Left"), "3");
    EXPECT_EQ(status().st_uid, bob);
    EXPECT_EQ(status().st_gid, players);
    EXPECT_EQ(status().st_mode & 07777U, 0660U);
}

TEST_F(SettingsFile, KeepsASymbolicLinkInItsPlace) {
    fs::create_directory(folder_.file("elsewhere"));
    support::writeFile(folder_.file("elsewhere/real"), "[General]\r\nLeft=1\r\n");
    fs::create_symlink("elsewhere/second", path_);
    fs::create_symlink("real", folder_.file("elsewhere/second"));
    write("Left", "2");
    EXPECT_TRUE(fs::is_symlink(path_));
    EXPECT_TRUE(fs::is_symlink(folder_.file("elsewhere/second")));
    EXPECT_EQ(support::readFile(folder_.file("elsewhere/real")), "[General]\r\nLeft=2\r\n");
    EXPECT_EQ(names(), (Names{"MP3.ini", "elsewhere"}));

    fs::remove(folder_.file("elsewhere/real")); // the link now points to nothing
    write("Left", "3");
    EXPECT_EQ(support::readFile(folder_.file("elsewhere/real")), "[General]\r\nLeft=3\r\n");
}

TEST_F(SettingsFile, ALinkToItselfIsLeftAlone) {
    fs::create_symlink("MP3.ini", path_);
    write("Left", "1");
    EXPECT_TRUE(fs::is_symlink(path_));
    EXPECT_EQ(read("Left"), "DEF");
}

TEST_F(SettingsFile, WhatMayNotBeWrittenStaysWithoutAMessage) {
    write("Left", "1");
    // Root may write anything, so somebody else tries.
    const auto asNobody = [&](const std::string& value) {
        return inChild([&] {
            if (geteuid() == 0 && setuid(65534) != 0) {
                return 1;
            }
            write("Left", value);
            return 0;
        });
    };
    fs::permissions(folder_.path(), fs::perms(0555));
    EXPECT_EQ(asNobody("2"), 0);
    EXPECT_EQ(read("Left"), "1");
    fs::permissions(folder_.path(), fs::perms(0777));
    fs::permissions(path_, fs::perms(0444));
    EXPECT_EQ(asNobody("3"), 0); // the folder would let it be replaced
    EXPECT_EQ(read("Left"), "1");
    EXPECT_EQ(names(), Names{"MP3.ini"});
}

TEST_F(SettingsFile, AFolderAPipeAndADeviceInItsPlaceAreLeftAlone) {
    const auto start = std::chrono::steady_clock::now();
    fs::create_directory(path_);
    EXPECT_EQ(read("Left"), "DEF");
    write("Left", "1");
    EXPECT_TRUE(fs::is_directory(path_));
    fs::remove(path_);

    ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
    EXPECT_EQ(read("Left"), "DEF");
    write("Left", "1");
    EXPECT_TRUE(fs::is_fifo(path_));
    fs::remove(path_);

    EXPECT_EQ(names(), Names{});

    const support::TemporaryFolder elsewhere;
    const std::string device = deviceIn(elsewhere);
    fs::create_symlink(device, path_);
    EXPECT_EQ(read("Left"), "DEF");
    write("Left", "1");
    EXPECT_TRUE(fs::is_symlink(path_));
    EXPECT_TRUE(fs::is_character_file(device));
    EXPECT_EQ(names(), Names{"MP3.ini"});
    EXPECT_LT(std::chrono::steady_clock::now() - start, milliseconds(200) * support::SLOWNESS);
}

TEST_F(SettingsFile, SomethingInTheWayOfTheNewFileLosesNothing) {
    write("Left", "1");
    fs::create_directory(path_ + ".new");
    write("Left", "2");
    EXPECT_EQ(read("Left"), "1");
    fs::remove(path_ + ".new");
    const support::TemporaryFolder elsewhere;
    support::writeFile(elsewhere.file("mine"), "kept");
    for (const std::string& target : {elsewhere.file("mine"), deviceIn(elsewhere)}) {
        fs::create_symlink(target, path_ + ".new");
        write("Left", "3");
        EXPECT_EQ(read("Left"), "1") << target;
        fs::remove(path_ + ".new");
    }
    EXPECT_EQ(support::readFile(elsewhere.file("mine")), "kept");
    ASSERT_EQ(mkfifo((path_ + ".new").c_str(), 0600), 0);
    write("Left", "4");
    EXPECT_EQ(read("Left"), "1");
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

TEST_F(SettingsFile, IsNotMadeLargerThanWhatIsRead) {
    std::string bytes = "[General]\r\nLeft=1\r\n";
    bytes.resize(whole_file::LARGEST, ';');
    support::writeFile(path_, bytes);
    EXPECT_EQ(read("Left"), "1");
    write("Left", "2");
    EXPECT_EQ(read("Left"), "2");
    write("Left", "10"); // one byte too many
    EXPECT_EQ(read("Left"), "2");
    EXPECT_EQ(names(), Names{"MP3.ini"});

    fs::resize_file(path_, whole_file::LARGEST + 1);
    EXPECT_EQ(read("Left"), "DEF");
    write("Left", "3");
    EXPECT_EQ(fs::file_size(path_), whole_file::LARGEST + 1);
}

TEST_F(SettingsFile, RubbishIsReadAtOnceAsNothing) {
    const auto timed = [&](const char* what) {
        const support::ProcessorTime time; // a write waits for the disk
        EXPECT_EQ(read("Left"), "DEF") << what;
        EXPECT_LT(time.seconds(), 0.1) << what;
        write("Left", "1");
        EXPECT_LT(time.seconds(), 0.3) << what;
    };
    support::writeFile(path_, "");
    fs::resize_file(path_, std::uintmax_t{1} << 30U);
    timed("a gigabyte");
    EXPECT_EQ(fs::file_size(path_), std::uintmax_t{1} << 30U);

    std::string rubbish(1000000, '\0');
    std::mt19937 random(5);
    for (char& byte : rubbish) {
        byte = static_cast<char>(random());
    }
    support::writeFile(path_, rubbish);
    timed("binary rubbish");
    EXPECT_EQ(read("Left"), "1");

    support::writeFile(path_, "[General]\r\n" + std::string(1000000, 'L') + "=5\r\n");
    timed("a line of a million characters");
    EXPECT_EQ(read("Left"), "1");

    support::writeFile(path_, "[General]\r\nLeft=" + std::string(1000000, '1') + "\r\n");
    EXPECT_EQ(read("Left").size(), 33000U);

    support::writeFile(path_, std::string(1000000, '\n'));
    timed("a million lines");
    EXPECT_EQ(read("Left"), "1");
}

} // namespace
} // namespace zvonivec
