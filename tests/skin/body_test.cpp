// The body: its edge, its display and its seats.
#include "skin/pictures.h"
#include "tests/skin/picture_pixels.h"

#include <QImage>
#include <QRect>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <set>

using namespace skin_test;
using namespace zvonivec::skin;

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
    const Pixels drawn = drawnPixels(load(BODY_PICTURE.file));
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
    const Pixels drawn = drawnPixels(body);
    // Returns the mean brightness a number of pixels inwards from every edge.
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
    // Along the bare shell between rail and plate no shade stays the same for long.
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
    // At the edge of a picture the body shows the same wall of the seat.
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
