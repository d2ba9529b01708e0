#include "track_info/rules.h"

#include <gtest/gtest.h>

namespace zvonivec {
namespace {

TEST(RateText, CutsThreeZeros) {
    EXPECT_EQ(rateText("128000"), "128 kb/s");
    EXPECT_EQ(rateText("192000"), "192 kb/s");
    EXPECT_EQ(rateText("1000000"), "1000 kb/s");
}

TEST(RateText, NeverRounds) {
    EXPECT_EQ(rateText("44100"), "44100 b/s");
    EXPECT_EQ(rateText("320500"), "320500 b/s");
    EXPECT_EQ(rateText("128001"), "128001 b/s");
}

TEST(RateText, LeavesShortTextsAsTheyStand) {
    EXPECT_EQ(rateText(""), " b/s");
    EXPECT_EQ(rateText("0"), "0 b/s");
    EXPECT_EQ(rateText("00"), "00 b/s");
    EXPECT_EQ(rateText("000"), " kb/s");
}

TEST(DoubledAmpersands, DoublesEachOfThem) {
    EXPECT_EQ(doubledAmpersands("a && b &c"), "a &&&& b &&c");
    EXPECT_EQ(doubledAmpersands("&"), "&&");
    EXPECT_EQ(doubledAmpersands("žluťoučký kůň"), "žluťoučký kůň");
    EXPECT_EQ(doubledAmpersands(""), "");
}

} // namespace
} // namespace zvonivec
