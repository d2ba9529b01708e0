#include "playback/rules.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace zvonivec {
namespace {

constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();

TEST(IsMp3, AnyCaseOfLetters) {
    EXPECT_TRUE(isMp3("mp3"));
    EXPECT_TRUE(isMp3("MP3"));
    EXPECT_TRUE(isMp3("Mp3"));
}

TEST(IsMp3, NothingElse) {
    for (const char* type : {"", "mp", "mp2", "mp33", " mp3", "mp3 ", "wav"}) {
        EXPECT_FALSE(isMp3(type)) << type;
    }
}

TEST(TimeUnderPointer, CountsFromJustLeftOfTheBar) {
    EXPECT_EQ(timeUnderPointer(0, 3000, 300), "00:04");
}

TEST(TimeUnderPointer, RoundsUpToTheFullMinute) {
    // (556 + 40) / 30 * 3 = 59.6
    EXPECT_EQ(timeUnderPointer(556, 3000, 300), "01:00");
}

TEST(TimeUnderPointer, RoundsHalvesToTheEvenSecond) {
    // 1 second is 10 twips: 65 twips after the offset are 6.5 seconds, 75 are 7.5.
    EXPECT_EQ(timeUnderPointer(25, 1000, 100), "00:06");
    EXPECT_EQ(timeUnderPointer(35, 1000, 100), "00:08");
}

TEST(TimeUnderPointer, PrintsMinutesAndSecondsWithTwoDigits) {
    EXPECT_EQ(timeUnderPointer(30, 1000, 100), "00:07");
    EXPECT_EQ(timeUnderPointer(1810, 1000, 100), "03:05");
}

TEST(TimeUnderPointer, PrintsHundredMinutesWithThreeDigits) {
    EXPECT_EQ(timeUnderPointer(960, 1000, 6000), "100:00");
    EXPECT_EQ(timeUnderPointer(960, 1000, 6005), "100:05");
}

TEST(TimeUnderPointer, IsTheStartLeftOfTheBar) {
    EXPECT_EQ(timeUnderPointer(-500, 3000, 300), "00:00");
}

TEST(TimeUnderPointer, IsComputedInSinglePrecision) {
    // In double precision these are 309.49997, 200.5 (to even) and 202.50001 seconds.
    EXPECT_EQ(timeUnderPointer(251 * 15, 3855, 313.567F), "05:10");
    EXPECT_EQ(timeUnderPointer(83 * 15, 3855, 601.5F), "03:21");
    EXPECT_EQ(timeUnderPointer(52 * 15, 3855, 951.997F), "03:22");
}

TEST(TimeUnderPointer, IsNothingForABarWithoutWidth) {
    EXPECT_EQ(timeUnderPointer(10, 0, 300), std::nullopt);
    EXPECT_EQ(timeUnderPointer(-40, 0, 300), std::nullopt);
    EXPECT_EQ(timeUnderPointer(NOT_A_NUMBER, 3000, 300), std::nullopt);
}

TEST(SeekTarget, LandsATouchLaterThanTheToolTipPromised) {
    EXPECT_DOUBLE_EQ(seekTarget(0, 3000, 300).value(), 5.0);
    EXPECT_DOUBLE_EQ(seekTarget(1450, 3000, 300).value(), 150.0);
}

TEST(SeekTarget, MayLieOutsideTheTrack) {
    EXPECT_DOUBLE_EQ(seekTarget(-350, 3000, 300).value(), -30.0);
    EXPECT_DOUBLE_EQ(seekTarget(3950, 3000, 300).value(), 400.0);
}

TEST(SeekTarget, HoldsSumAndQuotientInSinglePrecision) {
    const auto quotient = double{100.3F / 100.0F};
    EXPECT_EQ(seekTarget(0.1F, 3855, 100.3F).value(), double{0.1F + 50.0F} / 38.55 * quotient);
    EXPECT_NE(seekTarget(0.1F, 3855, 100.3F).value(), (0.1 + 50.0) / 38.55 * (100.3 / 100.0));
}

TEST(SeekTarget, IsNothingForABarWithoutWidth) {
    EXPECT_EQ(seekTarget(10, 0, 300), std::nullopt);
    EXPECT_EQ(seekTarget(NOT_A_NUMBER, 3000, 300), std::nullopt);
}

TEST(PlaceOfPosition, IsWhereAReleaseSeeksToThePosition) {
    EXPECT_EQ(placeOfPosition(0, 3855, 180), -50);
    for (const float length : {1.0F, 180.5F, 7200.0F, 360000.0F}) {
        for (const double part : {-0.1, 0.0, 0.3, 0.999, 1.0, 1.2}) {
            const double position = part * double{length};
            EXPECT_NEAR(seekTarget(placeOfPosition(position, 3855, length), 3855, length).value(),
                        position, double{length} * 2e-7);
        }
    }
}

} // namespace
} // namespace zvonivec
