// What every picture of the skin has to be: sizes, places, colours, transparency.
#include "skin/pictures.h"

#include <QImage>
#include <QRect>
#include <QString>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using namespace zvonivec::skin;

namespace {

constexpr QRgb MARK = qRgb(224, 255, 64);
constexpr QRgb DISPLAY = qRgb(0, 160, 192);

enum State { normal, hover, pressed, disabled };
constexpr std::array<QRgb, 4> SYMBOLS{qRgb(0, 192, 192), qRgb(64, 255, 255), qRgb(224, 255, 64),
                                      qRgb(160, 160, 160)};
constexpr std::array<int, 4> FIRST_NUMBER{1, 8, 15, 27};

QImage load(std::string_view file) {
    const QImage image(":/skin/" + QString::fromUtf8(file.data(), qsizetype(file.size())));
    EXPECT_FALSE(image.isNull()) << file;
    return image.convertToFormat(QImage::Format_ARGB32);
}

QImage listPicture(int number) {
    return load(LIST_PICTURES.at(static_cast<std::size_t>(number - 1)).file);
}

QImage roundButton(int button, State state) {
    return listPicture(FIRST_NUMBER.at(state) + button);
}

using Pixels = std::set<std::pair<int, int>>;

template<typename Wanted>
Pixels pixelsWhere(const QImage& image, Wanted wanted) {
    Pixels found;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (wanted(image.pixel(x, y))) {
                found.emplace(x, y);
            }
        }
    }
    return found;
}

Pixels clearPixels(const QImage& image) {
    return pixelsWhere(image, [](QRgb pixel) { return qAlpha(pixel) == 0; });
}

Pixels pixelsOf(const QImage& image, QRgb colour) {
    return pixelsWhere(image, [&](QRgb pixel) { return pixel == colour; });
}

/// Rows of '#' where the pixel is in the set.
std::vector<std::string> rowsOf(const Pixels& pixels, const QRect& area) {
    std::vector<std::string> rows;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        std::string row;
        for (int x = area.left(); x <= area.right(); ++x) {
            row += pixels.contains({x, y}) ? '#' : '.';
        }
        rows.push_back(row);
    }
    return rows;
}

QRect boundsOf(const Pixels& pixels) {
    QRect bounds;
    for (const auto& [x, y] : pixels) {
        bounds |= QRect(x, y, 1, 1);
    }
    return bounds;
}

std::vector<std::string> shapeOf(const Pixels& pixels) {
    return rowsOf(pixels, boundsOf(pixels));
}

std::vector<std::string> mirrored(std::vector<std::string> rows) {
    for (std::string& row : rows) {
        std::reverse(row.begin(), row.end());
    }
    return rows;
}

std::vector<ListPicture> allPictures() {
    std::vector<ListPicture> pictures(LIST_PICTURES.begin(), LIST_PICTURES.end());
    pictures.insert(pictures.end(),
                    {BODY_PICTURE, VOLUME_PICTURE, LOGO_PICTURE, ICON_PICTURE, HAND_PICTURE});
    return pictures;
}

/// What a GIF file's own bytes say.
struct GifFacts {
    bool isGif = false;
    int width = 0;
    int height = 0;
    int paletteSize = 0;
    int images = 0;
    int transparentEntries = 0;
};

GifFacts readGif(std::string_view file) {
    std::ifstream in(std::string(PICTURES_FOLDER "/") + std::string(file), std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const auto byte = [&](std::size_t at) {
        return static_cast<int>(static_cast<unsigned char>(bytes.at(at)));
    };
    GifFacts facts;
    facts.isGif = bytes.starts_with("GIF89a");
    facts.width = byte(6) + 256 * byte(7);
    facts.height = byte(8) + 256 * byte(9);
    facts.paletteSize = 2 << (byte(10) & 7);
    std::size_t at = 13 + static_cast<std::size_t>(facts.paletteSize) * 3;
    const auto skipBlocks = [&] {
        while (byte(at) != 0) {
            at += static_cast<std::size_t>(byte(at)) + 1;
        }
        ++at;
    };
    while (byte(at) != 0x3B) {
        if (byte(at) == 0x21) {
            if (byte(at + 1) == 0xF9 && (byte(at + 3) & 1) != 0) {
                ++facts.transparentEntries;
            }
            at += 2;
        } else {
            ++facts.images;
            at += 11;
        }
        skipBlocks();
    }
    return facts;
}

} // namespace

TEST(SkinPictures, HaveTheirSizes) {
    for (const ListPicture& picture : allPictures()) {
        const QImage image = load(picture.file);
        EXPECT_EQ(image.width(), picture.width) << picture.file;
        EXPECT_EQ(image.height(), picture.height) << picture.file;
    }
    for (const IconPicture& icon : ICON_PICTURES) {
        // These are for the desktop's menus: not in the program, only beside it.
        const QImage image(QString(PICTURES_FOLDER "/") +
                           QString::fromUtf8(icon.file.data(), qsizetype(icon.file.size())));
        EXPECT_EQ(image.size(), QSize(icon.size, icon.size)) << icon.file;
    }
    EXPECT_EQ(listPicture(1).size(), QSize(31, 31));
    EXPECT_EQ(listPicture(7).size(), QSize(14, 14));
    EXPECT_EQ(listPicture(22).size(), QSize(12, 6));
    EXPECT_EQ(listPicture(24).size(), QSize(8, 8));
    EXPECT_EQ(load(BODY_PICTURE.file).size(), QSize(337, 336));
}

TEST(SkinPictures, AreNeverPartlyTransparent) {
    for (const ListPicture& picture : allPictures()) {
        const Pixels partly = pixelsWhere(load(picture.file), [](QRgb pixel) {
            return qAlpha(pixel) != 0 && qAlpha(pixel) != 255;
        });
        EXPECT_TRUE(partly.empty()) << picture.file;
    }
}

TEST(SkinPictures, HoldOneImageAndOneTransparentEntry) {
    for (const ListPicture& picture : allPictures()) {
        if (!picture.file.ends_with(".gif")) {
            continue;
        }
        const GifFacts facts = readGif(picture.file);
        EXPECT_TRUE(facts.isGif) << picture.file;
        EXPECT_EQ(facts.width, picture.width) << picture.file;
        EXPECT_EQ(facts.height, picture.height) << picture.file;
        EXPECT_EQ(facts.images, 1) << picture.file;
        EXPECT_LE(facts.paletteSize, 256) << picture.file;
        const bool isStopMark = picture.file == LIST_PICTURES[24].file;
        EXPECT_EQ(facts.transparentEntries, isStopMark ? 0 : 1) << picture.file;
    }
}

TEST(SkinBody, IsClearExactlyOutsideTheOutline) {
    Pixels inside;
    std::ifstream rects(OUTLINE_RECTS);
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    while (rects >> left >> top >> right >> bottom) {
        for (int y = top; y < bottom; ++y) {
            for (int x = left; x < right; ++x) {
                inside.emplace(x, y);
            }
        }
    }
    ASSERT_EQ(inside.size(), 110210U);
    const Pixels drawn =
        pixelsWhere(load(BODY_PICTURE.file), [](QRgb pixel) { return qAlpha(pixel) != 0; });
    EXPECT_TRUE(drawn == inside);
}

TEST(SkinBody, HasAtMost256Colours) {
    std::set<QRgb> colours;
    const QImage body = load(BODY_PICTURE.file);
    for (int y = 0; y < body.height(); ++y) {
        for (int x = 0; x < body.width(); ++x) {
            colours.insert(body.pixel(x, y));
        }
    }
    EXPECT_LE(colours.size(), 256U);
}

TEST(SkinBody, ShowsThePlainDisplayColourBehindItsTexts) {
    const QImage body = load(BODY_PICTURE.file);
    // The information line, the loudspeaker, the status text up to "100% hlasitost" and the wide
    // marks.
    for (const QRect area : {QRect(86, 57, 164, 15), QRect(96, 77, 10, 8), QRect(111, 74, 90, 13),
                             QRect(232, 77, 12, 8)}) {
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                ASSERT_EQ(body.pixel(x, y), DISPLAY) << x << ',' << y;
            }
        }
    }
}

TEST(SkinBody, IsDarkBehindTheTimesAndTheBar) {
    const QImage body = load(BODY_PICTURE.file);
    for (const QRect area :
         {QRect(40, 264, 40, 13), QRect(258, 264, 40, 13), QRect(40, 288, 257, 10)}) {
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                ASSERT_LT(qGray(body.pixel(x, y)), 90) << x << ',' << y;
            }
        }
    }
}

TEST(SkinBody, GetsDarkTowardsItsOutline) {
    const QImage body = load(BODY_PICTURE.file);
    const Pixels drawn = pixelsWhere(body, [](QRgb pixel) { return qAlpha(pixel) != 0; });
    // Steps inwards from the left edge, from the right one and from the bottom.
    const auto brightness = [&](int inwards) {
        int sum = 0;
        int count = 0;
        for (int i = 60; i < 280; ++i) {
            for (const QPoint p : {QPoint(inwards, i), QPoint(336 - inwards, i),
                                   QPoint(i, 335 - inwards), QPoint(i, 9 + inwards)}) {
                EXPECT_TRUE(drawn.contains({p.x(), p.y()})) << p.x() << ',' << p.y();
                sum += qGray(body.pixel(p));
                ++count;
            }
        }
        return sum / count;
    };
    EXPECT_LT(brightness(0), 30);
    EXPECT_GT(brightness(4), 2 * brightness(0));
}

TEST(SkinBody, HasNoBands) {
    // Along the bare shell between rail and plate no shade runs on unchanged for long.
    const QImage body = load(BODY_PICTURE.file);
    for (int x = 30; x < 42; ++x) {
        int run = 0;
        int longest = 0;
        for (int y = 60; y < 190; ++y) {
            run = body.pixel(x, y) == body.pixel(x, y - 1) ? run + 1 : 0;
            longest = std::max(longest, run);
        }
        EXPECT_LT(longest, 16) << "in column " << x;
    }
}

namespace {

struct Placed {
    int number;
    int left;
    int top;
};
constexpr std::array<Placed, 5> ROUND_PLACES{{
    {1, 59, 144},
    {2, 106, 176},
    {3, 153, 208},
    {4, 200, 176},
    {5, 247, 144},
}};

int difference(QRgb a, QRgb b) {
    return (std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) +
            std::abs(qBlue(a) - qBlue(b))) /
           3;
}

} // namespace

TEST(SkinBody, CarriesOnTheRimsOfTheRoundButtons) {
    // Where a picture ends the body shows the same wall of the seat beneath it.
    const QImage body = load(BODY_PICTURE.file);
    for (const Placed& placed : ROUND_PLACES) {
        const QImage picture = listPicture(placed.number);
        const Pixels clear = clearPixels(picture);
        int sum = 0;
        int count = 0;
        for (int y = 0; y < 31; ++y) {
            for (int x = 0; x < 31; ++x) {
                const bool rim = !clear.contains({x, y}) &&
                                 (x == 0 || x == 30 || y == 0 || y == 30 ||
                                  clear.contains({x - 1, y}) || clear.contains({x + 1, y}) ||
                                  clear.contains({x, y - 1}) || clear.contains({x, y + 1}));
                if (rim) {
                    sum += difference(picture.pixel(x, y),
                                      body.pixel(placed.left + x, placed.top + y));
                    ++count;
                }
            }
        }
        EXPECT_GT(count, 60) << placed.number;
        EXPECT_LT(sum / count, 14) << placed.number;
    }
}

TEST(SkinBody, HasSeatsForButtonsLogoAndTiles) {
    const QImage body = load(BODY_PICTURE.file);
    const auto darkInMiddle = [&](const QRect& seat) {
        EXPECT_LT(qGray(body.pixel(seat.center())), 60) << seat.left() << ',' << seat.top();
    };
    for (const Placed& placed : ROUND_PLACES) {
        const QRect seat(placed.left, placed.top, 31, 31);
        darkInMiddle(seat);
        EXPECT_GT(qGray(body.pixel(seat.right() + 5, seat.center().y())), 100) << placed.number;
        EXPECT_GT(qGray(body.pixel(seat.left() - 5, seat.center().y())), 100) << placed.number;
    }
    darkInMiddle(QRect(153, 123, 32, 32));
    for (const QRect tile : {QRect(276, 34, 14, 14), QRect(292, 34, 14, 14)}) {
        const int shell = qGray(body.pixel(tile.center().x(), tile.bottom() + 10));
        EXPECT_LT(qGray(body.pixel(tile.center())), shell - 10) << tile.left();
    }
}

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

    // All stand in the middle; the triangle stands to the right, where its weight balances.
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

TEST(SkinDisplayMarks, HaveTheirShapes) {
    const std::vector<std::string> rewind{
        "##....#....#", //
        "##..###..###", //
        "############", //
        "############", //
        "##..###..###", //
        "##....#....#", //
    };
    const std::vector<std::string> play{
        "##......", //
        "####....", //
        "######..", //
        "########", //
        "########", //
        "######..", //
        "####....", //
        "##......", //
    };
    const std::map<int, std::vector<std::string>> shapes{
        {22, rewind},
        {23, std::vector<std::string>(8, "###..###")},
        {24, play},
        {25, std::vector<std::string>(8, "########")},
        {26, mirrored(rewind)},
    };
    for (const auto& [number, shape] : shapes) {
        const QImage mark = listPicture(number);
        EXPECT_EQ(rowsOf(pixelsOf(mark, MARK), mark.rect()), shape) << number;
        // Whatever isn't the mark is clear.
        EXPECT_EQ(pixelsOf(mark, MARK).size() + clearPixels(mark).size(),
                  static_cast<std::size_t>(mark.width() * mark.height()))
            << number;
    }
}

TEST(SkinLoudspeaker, HasThreeWaves) {
    const QImage picture = load(VOLUME_PICTURE.file);
    const std::vector<std::string> shape{
        "...#....#.", //
        "..##..#..#", //
        "####...#.#", //
        "####.#.#.#", //
        "####.#.#.#", //
        "####...#.#", //
        "..##..#..#", //
        "...#....#.", //
    };
    EXPECT_EQ(rowsOf(pixelsOf(picture, MARK), picture.rect()), shape);
    EXPECT_EQ(pixelsOf(picture, MARK).size() + clearPixels(picture).size(), 80U);
}

TEST(SkinBadges, HaveAMaskAndSomethingInIt) {
    for (const ListPicture& picture : {LOGO_PICTURE, ICON_PICTURE, HAND_PICTURE}) {
        const QImage image = load(picture.file);
        const std::size_t clear = clearPixels(image).size();
        EXPECT_GT(clear, 0U) << picture.file;
        EXPECT_LT(clear, 900U) << picture.file;
    }
}

TEST(SkinHand, PointsWithItsHotSpot) {
    const QImage hand = load(HAND_PICTURE.file);
    EXPECT_NE(qAlpha(hand.pixel(HAND_HOT_SPOT_X, HAND_HOT_SPOT_Y)), 0);
    const QRect bounds = boundsOf(pixelsWhere(hand, [](QRgb pixel) { return qAlpha(pixel) != 0; }));
    EXPECT_LE(std::abs(bounds.top() - HAND_HOT_SPOT_Y), 1) << "the tip of the finger";
}
