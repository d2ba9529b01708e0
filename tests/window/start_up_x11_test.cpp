// Traces of a running program that only Linux shows.

#include "tests/window/player_test.h"

#include <fstream>
#include <unistd.h>

namespace zvonivec {
namespace {

TEST_F(PlayerTest, MarksTheRunningProgramByItsTitle) {
    start();
    std::ifstream sockets("/proc/net/unix");
    const std::string all{std::istreambuf_iterator<char>(sockets), {}};
    EXPECT_NE(all.find("@Zvonivec MP3 Player 0.0.7 #" + std::to_string(getpid())),
              std::string::npos);
}

} // namespace
} // namespace zvonivec
