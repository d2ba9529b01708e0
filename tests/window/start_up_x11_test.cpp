// The marker of a running program, as this system shows it.

#include "platform/modDeklarace.h"
#include "tests/window/player_test.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <unistd.h>

namespace zvonivec {
namespace {

constexpr const char* TITLE = "Zvonivec MP3 Player 0.0.7";

/// Returns the names in the abstract namespace that sockets of this process have, without the '@'.
std::set<std::string> markersOfThisProcess() {
    std::set<std::string> inodes;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone; // the iterator's own descriptor
        const std::string target = std::filesystem::read_symlink(entry, gone).string();
        if (target.starts_with("socket:[")) {
            inodes.insert(target.substr(8, target.size() - 9));
        }
    }
    std::set<std::string> names;
    std::ifstream sockets("/proc/net/unix");
    for (std::string line; std::getline(sockets, line);) {
        // Columns: number, references, protocol, flags, type, state, inode, name.
        std::istringstream columns(line);
        std::string inode;
        for (int column = 0; column < 7; ++column) {
            columns >> inode;
        }
        std::string name;
        std::getline(columns, name);
        if (inodes.contains(inode) && name.starts_with(" @")) {
            names.insert(name.substr(2));
        }
    }
    return names;
}

std::string withNumber(const std::string& name) {
    return name + " #" + std::to_string(getpid());
}

TEST_F(PlayerTest, MarksTheRunningProgramByItsTitle) {
    // The exact name may be another test's, which runs at the same time.
    const auto count = [] {
        const std::set<std::string> all = markersOfThisProcess();
        return all.count(TITLE) + all.count(withNumber(TITLE));
    };
    const std::size_t before = count(); // an earlier test of this process may have started it
    start();
    EXPECT_EQ(count(), std::min<std::size_t>(before + 1, 2));
}

TEST(Marker, HasTheExactNameUntilAnotherCopyHasIt) {
    const std::string name = "zvonivec marker of " + std::to_string(getpid());
    modDeklarace::CreateMutexA(name);
    EXPECT_TRUE(markersOfThisProcess().contains(name));
    EXPECT_FALSE(markersOfThisProcess().contains(withNumber(name)));
    modDeklarace::CreateMutexA(name);
    EXPECT_TRUE(markersOfThisProcess().contains(name));
    EXPECT_TRUE(markersOfThisProcess().contains(withNumber(name)));
}

TEST(Marker, WithoutAFreeNameKeepsNoSocketOpen) {
    const auto openDescriptors = [] {
        const std::filesystem::directory_iterator all("/proc/self/fd");
        return std::distance(begin(all), end(all));
    };
    const std::string name = "zvonivec full marker of " + std::to_string(getpid());
    modDeklarace::CreateMutexA(name);
    modDeklarace::CreateMutexA(name);
    const auto before = openDescriptors();
    modDeklarace::CreateMutexA(name);
    modDeklarace::CreateMutexA(std::string(200, 'x')); // longer than a socket's name can be
    EXPECT_EQ(openDescriptors(), before);
}

} // namespace
} // namespace zvonivec
