#include "engine/time_text.h"

#include <gtest/gtest.h>
#include <limits>

namespace zvonivec {

namespace {

TEST(TimeText, IsMinutesAndSecondsCutNotRounded) {
    EXPECT_EQ(timeText(0), "00:00");
    EXPECT_EQ(timeText(0.999), "00:00");
    EXPECT_EQ(timeText(7), "00:07");
    EXPECT_EQ(timeText(59.999), "00:59");
    EXPECT_EQ(timeText(60), "01:00");
    EXPECT_EQ(timeText(185.5), "03:05");
    EXPECT_EQ(timeText(3599.99), "59:59");
}

TEST(TimeText, HasMoreDigitsFromAHundredMinutesOn) {
    EXPECT_EQ(timeText(99 * 60 + 59), "99:59");
    EXPECT_EQ(timeText(100 * 60), "100:00");
    EXPECT_EQ(timeText(999 * 60 + 1), "999:01");
}

TEST(TimeText, IsZeroForWhatIsNoTime) {
    EXPECT_EQ(timeText(-1), "00:00");
    EXPECT_EQ(timeText(std::numeric_limits<double>::quiet_NaN()), "00:00");
    EXPECT_FALSE(timeText(std::numeric_limits<double>::infinity()).empty());
}

} // namespace

} // namespace zvonivec
