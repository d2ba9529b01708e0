// The look of the window.
#include "tests/wine/wine_test.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace support {

namespace {

/// Returns a picture of a shape, with a '#' for each pixel.
std::vector<std::string> pixels(const std::vector<Rectangle>& shape) {
    std::vector<std::string> rows(player::HEIGHT, std::string(player::WIDTH, '.'));
    for (const Rectangle& part : shape) {
        for (int y = part.y; y < part.y + part.height; ++y) {
            for (int x = part.x; x < part.x + part.width; ++x) {
                rows.at(static_cast<std::size_t>(y)).at(static_cast<std::size_t>(x)) = '#';
            }
        }
    }
    return rows;
}

std::vector<Rectangle> outline() {
    std::vector<Rectangle> parts;
    std::ifstream file(TEST_DATA "/outline_rects.txt");
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    while (file >> left >> top >> right >> bottom) {
        parts.push_back({left, top, right - left, bottom - top});
    }
    return parts;
}

TEST_F(WindowsTest, StartsInTheMiddleOfTheScreenWithItsPictures) {
    EXPECT_TRUE(waitUntil([&] { return player_->showsIdleLook(); }));
    EXPECT_TRUE(becomesPlacedAt({(1280 - player::WIDTH + 1) / 2, (800 - player::HEIGHT) / 2}));
    EXPECT_EQ(player_->window().className(), "zvonivec.exe");
    EXPECT_FALSE(player_->window().hasFrame());
}

TEST_F(WindowsTest, HasExactlyThePixelsOfTheOutline) {
    const Rectangle place = player_->window().place();
    EXPECT_EQ(place.width, player::WIDTH);
    EXPECT_EQ(place.height, player::HEIGHT);
    const auto expected = pixels(outline());
    long count = 0;
    for (const std::string& row : expected) {
        count += std::ranges::count(row, '#');
    }
    EXPECT_EQ(count, 110210);
    EXPECT_EQ(pixels(player_->window().boundingShape()), expected);
}

TEST_F(WindowsTest, OutsideTheOutlineTheDesktopIsSeenAndClicked) {
    PlainWindow backdrop(display_, {0, 0, display_.width(), display_.height()}, 0x804020);
    const Point hole = player_->onScreen({2, 2});
    EXPECT_TRUE(waitUntil([&] { return player_->screenshot().at(2, 2) == 0x804020; }));
    EXPECT_TRUE(waitUntil([&] { return player_->showsIdleLook(); }));
    pointer_.click(hole);
    std::vector<PlainWindow::Click> clicks;
    EXPECT_TRUE(waitUntil([&] {
        const auto more = backdrop.takeClicks();
        clicks.insert(clicks.end(), more.begin(), more.end());
        return clicks.size() >= 2;
    }));
    ASSERT_FALSE(clicks.empty());
    EXPECT_EQ(clicks[0], (PlainWindow::Click{hole, 1, true}));
}

TEST_F(WindowsTest, ButtonsLightUpUnderThePointer) {
    EXPECT_TRUE(lightsUp(player::close));
    moveTo(player::BODY);
    EXPECT_TRUE(
        waitUntil([&] { return player_->showsButton(player::close, player::Look::normal); }));
}

TEST_F(WindowsTest, MinimisesAndIsRestoredInItsShape) {
    DesktopTest::click(player::minimise);
    ASSERT_TRUE(waitUntil([&] { return player_->window().isMinimised(); }));
    player_->window().activate();
    ASSERT_TRUE(waitUntil([&] { return player_->window().isShown(); }));
    EXPECT_TRUE(waitUntil([&] { return player_->showsIdleLook(); }));
    EXPECT_EQ(pixels(player_->window().boundingShape()), pixels(outline()));
}

TEST_F(WindowsTest, TwoCopiesRunAtTheSameTimeOneInAFolderWithCzechLetters) {
    const std::string folder = folder_.file("Žluťoučký kůň – přehrávač");
    Player second(display_, folder, environment());
    ASSERT_TRUE(second.waitUntilShown());
    EXPECT_TRUE(player_->process().running());
    EXPECT_FALSE(player_->window() == second.window());
    pointer_.click(second.onScreen(player::BUTTONS[player::close].middle()));
    EXPECT_EQ(second.process().waitForExit(), 0);
    EXPECT_TRUE(std::filesystem::exists(folder + "/MP3.ini"));
    EXPECT_FALSE(std::filesystem::exists(settingsPath()));
    closePlayer();
    EXPECT_TRUE(std::filesystem::exists(settingsPath()));
}

} // namespace

} // namespace support
