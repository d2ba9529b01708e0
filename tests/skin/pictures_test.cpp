// What all pictures have in common, and the small ones: marks, loudspeaker, badges, hand.
#include "skin/pictures.h"
#include "tests/skin/picture_file.h"
#include "tests/skin/picture_pixels.h"

#include <QImage>
#include <QRect>
#include <QString>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

using namespace skin_test;
using namespace zvonivec::skin;

namespace {

std::vector<ListPicture> allPictures() {
    std::vector<ListPicture> pictures(LIST_PICTURES.begin(), LIST_PICTURES.end());
    pictures.insert(pictures.end(),
                    {BODY_PICTURE, VOLUME_PICTURE, LOGO_PICTURE, ICON_PICTURE, HAND_PICTURE});
    return pictures;
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
        const GifFacts facts = readGif(std::string(PICTURES_FOLDER "/").append(picture.file));
        EXPECT_TRUE(facts.isGif) << picture.file;
        EXPECT_EQ(facts.width, picture.width) << picture.file;
        EXPECT_EQ(facts.height, picture.height) << picture.file;
        EXPECT_EQ(facts.images, 1) << picture.file;
        EXPECT_LE(facts.paletteSize, 256) << picture.file;
        const bool isStopMark = picture.file == LIST_PICTURES[24].file;
        EXPECT_EQ(facts.transparentEntries, isStopMark ? 0 : 1) << picture.file;
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
    const QRect bounds = boundsOf(drawnPixels(hand));
    EXPECT_LE(std::abs(bounds.top() - HAND_HOT_SPOT_Y), 1) << "the tip of the finger";
}
