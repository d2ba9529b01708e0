// Names of files that are bytes, as Windows doesn't have them.

#include "tests/window/player_test.h"

namespace zvonivec {
namespace {

TEST_F(PlayerTest, APathThatIsNotUtf8IsShownWithGuessedLetters) {
    start();
    open("/p\xEDsn\xEC/\xE8.mp3"); // Windows-1250
    const std::string text = player().BuildPropertiesText();
    EXPECT_TRUE(text.ends_with("URL: /písně/č.mp3")) << text;
    EXPECT_EQ(engine().URL(), "/p\xEDsn\xEC/\xE8.mp3");
}

} // namespace
} // namespace zvonivec
