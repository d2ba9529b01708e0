// Paints the pictures for comparison with screenshots in this process, without a display.
#include <QGuiApplication>
#include <array>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) {
        return RUN_ALL_TESTS();
    }
    std::array arguments{argv[0], const_cast<char*>("-platform"), const_cast<char*>("offscreen")};
    int count = static_cast<int>(arguments.size());
    const QGuiApplication application(count, arguments.data());
    return RUN_ALL_TESTS();
}
