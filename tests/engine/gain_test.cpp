#include "engine/output/gain.h"

#include <gtest/gtest.h>

namespace zvonivec {

namespace {

TEST(Gain, IsExactAtBothEndsAndBounded) {
    EXPECT_EQ(gainOfVolume(0), 0.0F);
    EXPECT_EQ(gainOfVolume(100), 1.0F);
    EXPECT_EQ(gainOfVolume(-10), 0.0F);
    EXPECT_EQ(gainOfVolume(110), 1.0F);
}

TEST(Gain, GrowsWithEveryStep) {
    for (int percent = 1; percent <= 100; ++percent) {
        EXPECT_GT(gainOfVolume(percent), gainOfVolume(percent - 1)) << percent;
    }
}

TEST(Gain, IsQuieterThanAStraightLineInBetween) {
    EXPECT_FLOAT_EQ(gainOfVolume(50), 0.125F);
}

} // namespace

} // namespace zvonivec
