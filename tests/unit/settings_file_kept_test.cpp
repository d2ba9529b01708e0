// The settings file stays as it is: its rights, links to it, and what isn't a settings file at all.
#include "tests/unit/settings_file_test.h"

#include "platform/whole_file.h"
#include "tests/support/processor_time.h"

#include <chrono>
#include <grp.h>
#include <random>
#include <sys/stat.h>

namespace zvonivec {
namespace {

using std::chrono::milliseconds;

/// Returns the name of a device. For root it is a device of the test's own, which nobody misses
/// when it is damaged. Other users can't damage the system's devices.
std::string deviceIn(const support::TemporaryFolder& folder) {
    if (geteuid() != 0) {
        return "/dev/zero";
    }
    constexpr dev_t zero = 1U << 8U | 5U;
    EXPECT_EQ(mknod(folder.file("device").c_str(), S_IFCHR | 0666U, zero), 0);
    return folder.file("device");
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

/// A file whose first bytes are a text and whose size is beyond what is read.
std::string largeFile(const std::string& beginning, const std::string& fill = "x=1\r\n") {
    std::string bytes = beginning;
    while (bytes.size() < 3 * whole_file::MOST_READ / 2) {
        bytes += fill;
    }
    return bytes + "[General]\r\nTop=99\r\n[End]\r\nlast";
}

TEST_F(SettingsFile, OfALargeOneTheFirstTwoMebibytesAreReadAndTheRestStays) {
    const std::string sections = "; mine\r\n[General]\r\nLeft=1\r\n\r\n[Other]\r\n";
    const std::string old = largeFile(sections);
    support::writeFile(path_, old);
    EXPECT_EQ(read("Left"), "1");
    EXPECT_EQ(read("Top"), "DEF") << "beyond what is read";
    write("Left", "-300");
    write("Top", "2");
    const std::string changed = "; mine\r\n[General]\r\nTop=2\r\nLeft=-300\r\n\r\n[Other]\r\n";
    EXPECT_EQ(support::readFile(path_), changed + old.substr(sections.size()));
    EXPECT_EQ(read("Left"), "-300");
    EXPECT_EQ(read("Top"), "2");
    EXPECT_EQ(names(), Names{"MP3.ini"});
    write("Top", "2");
    EXPECT_EQ(support::readFile(path_), changed + old.substr(sections.size()));
}

TEST_F(SettingsFile, ALargeOneGetsANewSectionInFrontOfTheOthers) {
    for (const char* mark : {"", "\xEF\xBB\xBF"}) {
        const std::string rest = largeFile("[Other]\n", "x=1\n");
        support::writeFile(path_, mark + rest);
        write("Left", "5");
        write("Top", "6");
        EXPECT_EQ(support::readFile(path_), mark + ("[General]\nTop=6\nLeft=5\n" + rest));
        EXPECT_EQ(read("Left"), "5");
    }
    // Lines in front of the first section stay outside of the new section.
    const std::string outside = "; mine\nTop=7\n";
    const std::string others = largeFile("[Other]\n", "x=1\n");
    support::writeFile(path_, outside + others);
    write("Left", "5");
    EXPECT_EQ(support::readFile(path_), outside + "[General]\nLeft=5\n" + others);
    EXPECT_EQ(read("Top"), "DEF");
    // A single line that is longer than what is read.
    const std::string line(whole_file::MOST_READ + 5, 'z');
    support::writeFile(path_, line);
    write("Left", "5");
    EXPECT_EQ(support::readFile(path_), "[General]\r\nLeft=5\r\n" + line);
    EXPECT_EQ(read("Left"), "5");
}

TEST_F(SettingsFile, AValueThatWouldNotBeReadAgainIsNotAdded) {
    // The section begins so many bytes before the end of what is read: within its name, within its
    // line end, within the value, and behind it.
    for (const std::size_t before : {5U, 10U, 17U, 19U, 28U}) {
        std::string bytes = "; \r\n";
        bytes.resize(whole_file::MOST_READ - before - 2, 'x');
        bytes += "\r\n[General]\r\nLeft=1\r\nTop=2\r\n";
        support::writeFile(path_, bytes);
        write("Left", "30");
        const std::string once = support::readFile(path_);
        EXPECT_TRUE(read("Left") == "30" || once == bytes) << before;
        write("Left", "30"); // nothing grows with each run
        EXPECT_EQ(support::readFile(path_), once) << before;
    }
}

TEST_F(SettingsFile, MayGrowBeyondWhatIsRead) {
    std::string bytes = "[General]\r\nLeft=1\r\n";
    bytes.resize(whole_file::MOST_READ, ';');
    support::writeFile(path_, bytes);
    EXPECT_EQ(read("Left"), "1");
    write("Left", "10"); // one byte more than is read
    EXPECT_EQ(read("Left"), "10");
    bytes.replace(0, 20, "[General]\r\nLeft=10\r\n");
    EXPECT_EQ(support::readFile(path_), bytes + ";");
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
    const std::string added = "[General]\r\nLeft=1\r\n";
    EXPECT_EQ(fs::file_size(path_), (std::uintmax_t{1} << 30U) + added.size());
    struct stat status {};
    ASSERT_EQ(stat(path_.c_str(), &status), 0);
    EXPECT_LT(status.st_blocks * 512, 8 << 20) << "the hole has been filled";
    EXPECT_EQ(read("Left"), "1");

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
