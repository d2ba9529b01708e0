// The pictures for screens with more pixels: the same device, drawn finer.
#include "skin/pictures.h"
#include "skin/window_outline.h"
#include "tests/skin/picture_pixels.h"

#include <QImage>
#include <QPolygon>
#include <QRect>
#include <QRegion>
#include <QString>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string_view>
#include <utility>
#include <vector>

using namespace skin_test;
using namespace zvonivec::skin;

namespace {

QImage cut(const QImage& sheet, const SheetPlace& place, int scale) {
    return sheet.copy(place.left * scale, place.top * scale, place.picture.width * scale,
                      place.picture.height * scale);
}

const SheetPlace& placeOf(int number) {
    return SHEET_PLACES.at(static_cast<std::size_t>(number - 1));
}

bool isClear(QRgb pixel) {
    return qAlpha(pixel) == 0;
}

/// Returns the mean of the sharp pixels that lie on a pixel of the plain picture, or a clear pixel
/// when most of them are clear.
QRgb meanOf(const QImage& sharp, int x, int y, int scale) {
    int red = 0;
    int green = 0;
    int blue = 0;
    int count = 0;
    for (int i = 0; i < scale * scale; ++i) {
        const QRgb pixel = sharp.pixel(x * scale + i % scale, y * scale + i / scale);
        if (!isClear(pixel)) {
            red += qRed(pixel);
            green += qGreen(pixel);
            blue += qBlue(pixel);
            ++count;
        }
    }
    return 2 * count < scale * scale ? qRgba(0, 0, 0, 0)
                                     : qRgb(red / count, green / count, blue / count);
}

struct Likeness {
    double meanDifference = 0; ///< steps of a channel, where both pictures are drawn
    int maskDifference = 0;    ///< pixels that only one of them draws
};

Likeness compared(const QImage& plain, const QImage& sharp, int scale) {
    Likeness likeness;
    int count = 0;
    for (int y = 0; y < plain.height(); ++y) {
        for (int x = 0; x < plain.width(); ++x) {
            const QRgb a = plain.pixel(x, y);
            const QRgb b = meanOf(sharp, x, y, scale);
            if (isClear(a) != isClear(b)) {
                ++likeness.maskDifference;
            } else if (!isClear(a)) {
                likeness.meanDifference +=
                    (std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) +
                     std::abs(qBlue(a) - qBlue(b))) /
                    3.0;
                ++count;
            }
        }
    }
    likeness.meanDifference /= std::max(count, 1);
    return likeness;
}

class SharpPicture : public testing::TestWithParam<int> {
protected:
    const int scale = GetParam();
    const SharpPictures& files = *std::ranges::find(SHARP_PICTURES, scale, &SharpPictures::scale);
    const QImage body = load(files.body);
    const QImage sheet = load(files.sheet);
};

} // namespace

TEST_P(SharpPicture, HasItsSize) {
    EXPECT_EQ(body.size(), QSize(337, 336) * scale);
    EXPECT_EQ(sheet.size(), QSize(SHEET_WIDTH, SHEET_HEIGHT) * scale);
}

TEST_P(SharpPicture, IsOfOneBitTransparency) {
    for (const QImage& image : {body, sheet}) {
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const int alpha = qAlpha(image.pixel(x, y));
                ASSERT_TRUE(alpha == 0 || alpha == 255) << x << ',' << y;
            }
        }
    }
}

TEST_P(SharpPicture, BodyIsClearExactlyOutsideTheScaledOutline) {
    QPolygon polygon;
    for (const zvonivec::skin::OutlineVertex& vertex : zvonivec::skin::WINDOW_OUTLINE) {
        polygon.append(QPoint(vertex.x * scale, vertex.y * scale));
    }
    const QRegion inside(polygon, Qt::WindingFill);
    int wrong = 0;
    for (int y = 0; y < body.height(); ++y) {
        for (int x = 0; x < body.width(); ++x) {
            wrong += isClear(body.pixel(x, y)) == inside.contains(QPoint(x, y)) ? 1 : 0;
        }
    }
    EXPECT_EQ(wrong, 0);
}

TEST_P(SharpPicture, BodyShowsThePlainDisplayColourBehindItsTexts) {
    for (const QRect area : {QRect(86, 57, 164, 15), QRect(96, 77, 10, 8), QRect(111, 74, 90, 13),
                             QRect(232, 77, 12, 8)}) {
        for (int y = area.top() * scale; y < (area.bottom() + 1) * scale; ++y) {
            for (int x = area.left() * scale; x < (area.right() + 1) * scale; ++x) {
                ASSERT_EQ(body.pixel(x, y), DISPLAY) << x << ',' << y;
            }
        }
    }
}

TEST_P(SharpPicture, BodyLooksLikeThePlainOne) {
    const Likeness likeness = compared(load(BODY_PICTURE.file), body, scale);
    EXPECT_LT(likeness.meanDifference, 4);
    EXPECT_LT(likeness.maskDifference, 60);
}

TEST_P(SharpPicture, PicturesOnTheSheetLookLikeThePlainOnes) {
    for (const SheetPlace& place : SHEET_PLACES) {
        const Likeness likeness =
            compared(load(place.picture.file), cut(sheet, place, scale), scale);
        // Fine curves replace stairs of whole pixels, which differ most in small pictures.
        const bool isSmall = place.picture.width < 14;
        EXPECT_LT(likeness.meanDifference, isSmall ? 40 : 9) << place.picture.file;
        EXPECT_LT(likeness.maskDifference, isSmall ? 20 : 30) << place.picture.file;
    }
}

TEST_P(SharpPicture, RoundButtonsDifferBetweenStatesInTheirSymbolsAlone) {
    for (int button = 0; button < 5; ++button) {
        const QImage normal = cut(sheet, placeOf(FIRST_NUMBER[0] + button), scale);
        const auto isSymbol = [&](int x, int y) {
            return normal.rect().contains(x, y) && normal.pixel(x, y) == SYMBOLS[0];
        };
        for (std::size_t state = 1; state < SYMBOLS.size(); ++state) {
            const QImage other = cut(sheet, placeOf(FIRST_NUMBER.at(state) + button), scale);
            int symbolPixels = 0;
            for (int y = 0; y < normal.height(); ++y) {
                for (int x = 0; x < normal.width(); ++x) {
                    const bool isEdge = isSymbol(x - 1, y) || isSymbol(x + 1, y) ||
                                        isSymbol(x, y - 1) || isSymbol(x, y + 1) ||
                                        isSymbol(x - 1, y - 1) || isSymbol(x + 1, y + 1) ||
                                        isSymbol(x - 1, y + 1) || isSymbol(x + 1, y - 1);
                    if (isSymbol(x, y)) {
                        ASSERT_EQ(other.pixel(x, y), SYMBOLS.at(state)) << x << ',' << y;
                        ++symbolPixels;
                    } else if (!isEdge) {
                        ASSERT_EQ(other.pixel(x, y), normal.pixel(x, y))
                            << button << ' ' << state << ": " << x << ',' << y;
                    }
                }
            }
            EXPECT_GT(symbolPixels, 40 * scale * scale) << button;
        }
    }
}

TEST_P(SharpPicture, TilesAreClearInTheirFourCornersAlone) {
    for (const int number : {6, 7, 13, 14, 20, 21}) {
        const QImage tile = cut(sheet, placeOf(number), scale);
        int wrong = 0;
        for (int y = 0; y < tile.height(); ++y) {
            for (int x = 0; x < tile.width(); ++x) {
                const bool isCorner =
                    (x / scale == 0 || x / scale == 13) && (y / scale == 0 || y / scale == 13);
                wrong += isClear(tile.pixel(x, y)) == isCorner ? 0 : 1;
            }
        }
        EXPECT_EQ(wrong, 0) << number;
    }
}

TEST_P(SharpPicture, MarksAreOfTheirColourAndTheDisplays) {
    for (const int number : {22, 23, 24, 25, 26, 33}) { // the last is the loudspeaker
        const QImage mark = cut(sheet, placeOf(number), scale);
        int full = 0;
        for (int y = 0; y < mark.height(); ++y) {
            for (int x = 0; x < mark.width(); ++x) {
                const QRgb pixel = mark.pixel(x, y);
                full += pixel == MARK ? 1 : 0;
                // Only mixtures of the two colours, with the rounding of the palette.
                if (!isClear(pixel)) {
                    const int share = qRed(pixel) * 100 / qRed(MARK);
                    EXPECT_GE(qGreen(pixel), 150) << number << ": " << share;
                    EXPECT_LE(qBlue(pixel), 200) << number << ": " << share;
                }
            }
        }
        EXPECT_GT(full, 15 * scale * scale) << number;
    }
}

INSTANTIATE_TEST_SUITE_P(PixelsToOne, SharpPicture, testing::Values(2, 3),
                         testing::PrintToStringParamName());
