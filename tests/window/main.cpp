#include "controls/Application.h"
#include "tests/support/display.h"

#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string_view>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) {
        return RUN_ALL_TESTS();
    }
    const support::Display display;
    if (!display.ok()) {
        std::fprintf(stderr, "No virtual display: %s\n", display.problem().c_str());
        return 1;
    }
    display.useInThisProcess();
    const zvonivec::Application application("xcb");
    return RUN_ALL_TESTS();
}
