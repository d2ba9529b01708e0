// What code that got hold of a process could do. Each attempt has a process of its own, as rights
// that were given up don't come back.

#include "platform/confinement.h"
#include "tests/support/under_wine.h"

#include <array>
#include <cstdlib>
#include <gtest/gtest.h>
#include <windows.h>

namespace zvonivec {
namespace {

constexpr int DONE = 10;
constexpr int REFUSED = 11;

/// Wine accepts the policies of a process without keeping to them.
int refusedOnWindows() {
    return support::underWine() ? DONE : REFUSED;
}

int startProgram() {
    std::array<wchar_t, 32> command{L"cmd.exe /c exit"};
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION started{};
    if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr,
                       nullptr, &start, &started) == FALSE) {
        return REFUSED;
    }
    CloseHandle(started.hThread);
    CloseHandle(started.hProcess);
    return DONE;
}

TEST(Confinement, EveryPolicyIsAccepted) {
    EXPECT_EXIT(std::exit(confine().calls ? DONE : REFUSED), testing::ExitedWithCode(DONE), "");
}

TEST(Confinement, NoProgramIsStarted) {
    EXPECT_EXIT(std::exit(startProgram()), testing::ExitedWithCode(DONE), "");
    EXPECT_EXIT(
        {
            confine();
            std::exit(startProgram());
        },
        testing::ExitedWithCode(refusedOnWindows()), "");
}

} // namespace
} // namespace zvonivec
