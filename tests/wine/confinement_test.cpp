// The rights that the player gives up. Wine keeps to none of these policies, but says which it got.
#include "tests/wine/wine_test.h"

namespace support {

namespace {

/// Wine's line about a policy that it got, up to the address of the value.
std::string lineOfPolicy(int number) {
    return "SetProcessMitigationPolicy (" + std::to_string(number) + ", ";
}

TEST_F(WindowsTest, GivesUpChildrenForeignLibrariesAndExtensions) {
    Process::Environment withMessages = environment();
    withMessages.emplace_back("WINEDEBUG", "fixme+process");
    Player confined(display_, folder_.file("confined"), withMessages);
    ASSERT_TRUE(confined.waitUntilShown());
    constexpr int childProcesses = 13;
    constexpr int imageLoads = 10;
    constexpr int extensionPoints = 6;
    for (const int policy : {childProcesses, imageLoads, extensionPoints}) {
        EXPECT_NE(confined.messages().find(lineOfPolicy(policy)), std::string::npos)
            << policy << '\n'
            << confined.messages();
    }
    pointer_.click(confined.onScreen(player::BUTTONS[player::close].middle()));
    EXPECT_EQ(confined.process().waitForExit(), 0);
    closePlayer();
}

} // namespace

} // namespace support
