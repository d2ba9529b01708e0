// The system's own message boxes.
#include "tests/wine/wine_test.h"

namespace support {

namespace {

TEST_F(WindowsTest, TheAboutBoxIsASystemBoxAndClosesWithReturn) {
    choose(menu::ABOUT);
    const auto box = waitForTitle(std::string("O programu ") + player::TITLE);
    ASSERT_TRUE(box);
    EXPECT_FALSE(menu());
    const std::string texts = windowTexts();
    EXPECT_NE(texts.find("Program je napsán v jazyce C++ s knihovnami Qt, libmpg123, zlib a SDL, "
                         "sestavuje a instaluje se nástrojem CMake.\r\n\r\nGrafika tlačítek"),
              std::string::npos)
        << texts;
    EXPECT_NE(texts.find("E-mail:\t\tneuvedeno\r\nHome page:\tneuvedeno"), std::string::npos)
        << texts;
    EXPECT_NE(texts.find("\nOK\n"), std::string::npos) << texts;
    answer(*box, "Return");
    EXPECT_TRUE(waitUntil([&] { return player_->window().isActive(); }));
    closePlayer();
}

} // namespace

} // namespace support
