// Traces of a running program that only Windows shows.

#include "tests/window/player_test.h"

#include <windows.h>

namespace zvonivec {
namespace {

TEST_F(PlayerTest, MarksTheRunningProgramByItsTitle) {
    const auto marker = [] { return OpenMutexA(SYNCHRONIZE, FALSE, "Zvonivec MP3 Player 0.0.7"); };
    start();
    const HANDLE found = marker();
    EXPECT_NE(found, nullptr);
    CloseHandle(found);
}

} // namespace
} // namespace zvonivec
