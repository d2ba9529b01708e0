#include "controls/Application.h"
#include "platform/display.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) {
        return RUN_ALL_TESTS();
    }
    const zvonivec::Application application(zvonivec::displayBackEnds());
    return RUN_ALL_TESTS();
}
