// The round buttons and the two tiles in their states.
#include "tests/skin/picture_pixels.h"

#include <QImage>
#include <QRect>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace skin_test;

TEST(SkinRoundButtons, Have168ClearPixelsInOneMask) {
    const Pixels mask = clearPixels(roundButton(0, normal));
    EXPECT_EQ(mask.size(), 168U);
    for (int button = 0; button < 5; ++button) {
        for (const State state : {normal, hover, pressed, disabled}) {
            EXPECT_EQ(clearPixels(roundButton(button, state)), mask) << button << ' ' << state;
        }
    }
}

TEST(SkinRoundButtons, DifferBetweenStatesInTheSymbolsColourAlone) {
    for (int button = 0; button < 5; ++button) {
        const QImage picture = roundButton(button, normal);
        const Pixels symbol = pixelsOf(picture, SYMBOLS[normal]);
        EXPECT_GT(symbol.size(), 40U) << button;
        for (const State state : {hover, pressed, disabled}) {
            const QImage other = roundButton(button, state);
            EXPECT_EQ(pixelsOf(other, SYMBOLS.at(state)), symbol) << button << ' ' << state;
            for (int y = 0; y < 31; ++y) {
                for (int x = 0; x < 31; ++x) {
                    if (!symbol.contains({x, y})) {
                        ASSERT_EQ(other.pixel(x, y), picture.pixel(x, y))
                            << button << ' ' << state << ": " << x << ',' << y;
                    }
                }
            }
        }
    }
}

TEST(SkinRoundButtons, AreDarkAroundTheirSymbols) {
    for (int button = 0; button < 5; ++button) {
        const QImage image = roundButton(button, normal);
        const Pixels symbol = pixelsOf(image, SYMBOLS[normal]);
        int sum = 0;
        int count = 0;
        for (int y = 8; y < 23; ++y) {
            for (int x = 8; x < 23; ++x) {
                if (!symbol.contains({x, y})) {
                    sum += qGray(image.pixel(x, y));
                    ++count;
                }
            }
        }
        EXPECT_LT(sum / count, 70) << button;
    }
}

TEST(SkinRoundButtons, ShowTheirSymbols) {
    const auto symbol = [](int button) {
        return pixelsOf(roundButton(button, normal), SYMBOLS[0]);
    };
    const std::vector<std::string> rewind{
        "##.....#....#", //
        "##....##...##", //
        "##...###..###", //
        "##..####.####", //
        "##.##########", //
        "##..####.####", //
        "##...###..###", //
        "##....##...##", //
        "##.....#....#", //
    };
    EXPECT_EQ(shapeOf(symbol(0)), rewind);
    EXPECT_EQ(shapeOf(symbol(1)), std::vector<std::string>(9, "###...###"));
    const std::vector<std::string> play{
        "##.........", //
        "####.......", //
        "######.....", //
        "########...", //
        "##########.", //
        "###########", //
        "##########.", //
        "########...", //
        "######.....", //
        "####.......", //
        "##.........", //
    };
    EXPECT_EQ(shapeOf(symbol(2)), play);
    EXPECT_EQ(shapeOf(symbol(3)), std::vector<std::string>(9, "#########"));
    EXPECT_EQ(shapeOf(symbol(4)), mirrored(rewind));

    // All symbols stand in the middle, but the triangle a little to the right, where it balances.
    for (const int button : {0, 1, 3, 4}) {
        EXPECT_EQ(boundsOf(symbol(button)).center(), QPoint(15, 15)) << button;
    }
    EXPECT_EQ(boundsOf(symbol(2)).center(), QPoint(16, 15));
}

TEST(SkinTiles, AreClearInTheirFourCornersAlone) {
    const Pixels corners{{0, 0}, {13, 0}, {0, 13}, {13, 13}};
    for (const int number : {6, 7, 13, 14, 20, 21}) {
        EXPECT_EQ(clearPixels(listPicture(number)), corners) << number;
    }
}

namespace {

/// The pixels of a tile that are darker than both the tile's pressed and its other shadings.
Pixels tileSymbol(const QImage& tile) {
    return pixelsWhere(tile.copy(2, 2, 10, 10), [](QRgb pixel) { return qGray(pixel) < 80; });
}

int rowBrightness(const QImage& tile, int row) {
    int sum = 0;
    for (int x = 2; x < 12; ++x) {
        sum += qGray(tile.pixel(x, row));
    }
    return sum / 10;
}

} // namespace

TEST(SkinTiles, ShowTheSameSymbolInAllStates) {
    const Pixels bar = tileSymbol(listPicture(6));
    const QRect bounds = boundsOf(bar);
    EXPECT_GT(bounds.width(), bounds.height());
    EXPECT_GT(bounds.top(), 4) << "the bar lies low in the tile";
    EXPECT_LT(bounds.center().x(), 5) << "the bar lies towards the left";
    EXPECT_EQ(shapeOf(bar),
              std::vector<std::string>(static_cast<std::size_t>(bounds.height()),
                                       std::string(static_cast<std::size_t>(bounds.width()), '#')));
    EXPECT_EQ(tileSymbol(listPicture(13)), bar);
    EXPECT_EQ(tileSymbol(listPicture(20)), bar);

    const Pixels cross = tileSymbol(listPicture(7));
    EXPECT_EQ(shapeOf(cross), mirrored(shapeOf(cross)));
    EXPECT_EQ(boundsOf(cross).width(), boundsOf(cross).height());
    EXPECT_TRUE(cross.contains({4, 4}));
    EXPECT_FALSE(cross.contains({4, boundsOf(cross).top()}));
    EXPECT_EQ(tileSymbol(listPicture(14)), cross);
    EXPECT_EQ(tileSymbol(listPicture(21)), cross);
}

TEST(SkinTiles, LookPushedInWhenPressed) {
    for (const int number : {6, 7}) {
        const QImage normal = listPicture(number);
        const QImage hover = listPicture(number + 7);
        const QImage pressed = listPicture(number + 14);
        EXPECT_NE(normal, hover) << number;
        EXPECT_GT(rowBrightness(normal, 1), 130) << "a light tile";
        EXPECT_GT(rowBrightness(hover, 6), rowBrightness(normal, 6));
        EXPECT_LT(rowBrightness(pressed, 0), rowBrightness(normal, 0) - 20);
        EXPECT_LT(rowBrightness(pressed, 1), rowBrightness(normal, 1) - 20);
        EXPECT_GT(rowBrightness(pressed, 12), rowBrightness(normal, 12) + 10);
        EXPECT_GT(rowBrightness(pressed, 12), rowBrightness(pressed, 1) + 20);
        EXPECT_GT(rowBrightness(normal, 1), rowBrightness(normal, 12) + 10);
    }
}
