// Sounds found again in recordings, with the silence that a late client makes.

#include "tests/support/recording.h"

#include <gtest/gtest.h>

namespace support {
namespace {

/// A sound without two equal samples in a row, which has zeros of its own.
Samples sound() {
    Samples samples;
    for (int i = 0; i < 600; ++i) {
        samples.push_back(static_cast<std::int16_t>(i % 50 == 7 ? 0 : i * 37 % 1000 + 1));
    }
    return samples;
}

Samples withSilence(Samples samples, std::size_t at, std::size_t length) {
    samples.insert(samples.begin() + static_cast<std::ptrdiff_t>(at), length, 0);
    return samples;
}

TEST(Follow, GoesOnBehindSilenceOfAnyLength) {
    for (const std::size_t place : {10U, 57U, 58U, 300U}) {
        for (const std::size_t length : {1U, 2U, 122U, 128U, 130U, 5000U}) {
            SCOPED_TRACE(std::to_string(place) + " " + std::to_string(length));
            const Match match = follow(withSilence(sound(), place, length), 0, sound(), 0);
            EXPECT_EQ(match.length, sound().size());
            EXPECT_EQ(match.silence, length);
            EXPECT_EQ(match.end, sound().size() + length);
        }
    }
}

TEST(Follow, EndsWhereSamplesAreLost) {
    Samples lost = sound();
    lost.erase(lost.begin() + 300, lost.begin() + 302);
    EXPECT_EQ(follow(lost, 0, sound(), 0).length, 300U);
    // In silence too.
    EXPECT_EQ(follow(withSilence(lost, 300, 200), 0, sound(), 0).length, 300U);
}

TEST(Follow, EndsAtTheSilenceWithoutGaps) {
    const Match match = follow(withSilence(sound(), 300, 200), 0, sound(), 0, false);
    EXPECT_EQ(match.length, 300U);
}

} // namespace
} // namespace support
