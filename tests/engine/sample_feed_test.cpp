// Tests the feed with the test itself in place of the device's callback.

#include "engine/output/sample_feed.h"

#include "tests/support/recording.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <thread>

namespace zvonivec {

namespace {

using support::Samples;

constexpr std::size_t PERIOD = 512;
constexpr std::size_t FADE = SampleFeed::FADE_FRAMES;

/// Mono samples that count up from a number, so that each shows its place.
Samples counting(int from, std::size_t count) {
    Samples samples;
    for (std::size_t i = 0; i < count; ++i) {
        samples.push_back(static_cast<std::int16_t>(from + static_cast<int>(i)));
    }
    return samples;
}

class Feed : public testing::Test {
protected:
    void SetUp() override { feed.setFormat(1, 44100); }

    Samples fill(std::size_t frames = PERIOD) {
        Samples target(frames, 12345);
        feed.fill(target);
        feed.setClock(feed.deviceFrame(), SampleFeed::Clock::now(), false); // heard at once
        return target;
    }

    SampleFeed feed{4096};
};

const Samples SILENCE(PERIOD, 0);

TEST_F(Feed, IsSilentUntilAStreamIsAllowed) {
    feed.beginStream(1);
    feed.write(counting(1, 1000));
    EXPECT_EQ(fill(), SILENCE);
    feed.allow(2);
    EXPECT_EQ(fill(), SILENCE);
    feed.allow(1);
    EXPECT_EQ(fill(), counting(1, PERIOD));
    EXPECT_EQ(feed.readIndex(), PERIOD);
}

TEST_F(Feed, PassesEverySampleOnceAndUnchanged) {
    feed.beginStream(1);
    feed.allow(1);
    int written = 0;
    int read = 0;
    for (int round = 0; round < 100; ++round) {
        feed.write(counting(written, 300));
        written += 300;
        const Samples got = fill(300);
        EXPECT_EQ(got, counting(read, 300));
        read += 300;
    }
}

TEST_F(Feed, FillsUpWithSilenceWhenThereIsTooLittle) {
    feed.beginStream(1);
    feed.allow(1);
    feed.write(counting(1, 100));
    Samples expected = counting(1, 100);
    expected.resize(PERIOD, 0);
    EXPECT_EQ(fill(), expected);
    EXPECT_EQ(fill(), SILENCE);
    feed.write(counting(101, PERIOD));
    EXPECT_EQ(fill(), counting(101, PERIOD));
}

TEST_F(Feed, PauseFadesOutAndResumeLeadsInAndNothingIsLost) {
    feed.beginStream(1);
    feed.allow(1);
    feed.write(Samples(3000, 10000));
    EXPECT_EQ(fill(), Samples(PERIOD, 10000));
    feed.allow(0);
    const Samples out = fill();
    EXPECT_EQ(feed.readIndex(), PERIOD) << "the fade takes nothing";
    EXPECT_GT(out[0], 9800);
    EXPECT_TRUE(std::is_sorted(out.rbegin(), out.rend()));
    EXPECT_EQ(Samples(out.begin() + FADE, out.end()), Samples(PERIOD - FADE, 0));
    EXPECT_EQ(fill(), SILENCE);
    feed.allow(1);
    const Samples in = fill();
    EXPECT_TRUE(std::is_sorted(in.begin(), in.end()));
    EXPECT_LT(in[0], 200);
    EXPECT_EQ(Samples(in.begin() + FADE, in.end()), Samples(PERIOD - FADE, 10000));
    EXPECT_EQ(feed.readIndex(), PERIOD + PERIOD - FADE);
}

TEST_F(Feed, TheLeadInIsWhatCameBefore) {
    feed.beginStream(1);
    feed.allow(1);
    feed.write(counting(1, 3000));
    fill();
    feed.allow(0);
    fill();
    feed.allow(1);
    const Samples in = fill();
    const int before = static_cast<int>(PERIOD - FADE);
    for (std::size_t i = 0; i < FADE; ++i) {
        const double expected =
            (before + 1 + static_cast<int>(i)) * static_cast<double>(i + 1) / (FADE + 1);
        EXPECT_NEAR(in[i], expected, 1) << i;
    }
    EXPECT_EQ(in[FADE], static_cast<int>(PERIOD) + 1);
}

TEST_F(Feed, ANewStreamReplacesTheOldOne) {
    feed.beginStream(1);
    feed.allow(1);
    feed.write(Samples(2000, 1000));
    fill();
    feed.allow(2);
    feed.beginStream(2);
    feed.write(counting(1, 1000));
    const Samples out = fill(); // fades the old stream out
    EXPECT_GT(out[0], 900);
    EXPECT_EQ(out[FADE], 0);
    EXPECT_EQ(fill(), counting(1, PERIOD));
    EXPECT_EQ(feed.writeIndex() - feed.readIndex(), 1000 - PERIOD);
}

TEST_F(Feed, TheOldStreamIsGivenUpWithoutADeviceToo) {
    feed.beginStream(1);
    feed.write(Samples(4096, 1000));
    EXPECT_EQ(feed.space(), 0U);
    feed.beginStream(2);
    feed.dropOld();
    EXPECT_EQ(feed.space(), 4096U);
}

TEST_F(Feed, VolumeIsRampedAndExact) {
    feed.beginStream(1);
    feed.setGain(0.5F);
    feed.allow(1);
    feed.write(Samples(4000, 10000));
    EXPECT_EQ(fill(), Samples(PERIOD, 5000)) << "the volume at the start applies at once";
    feed.setGain(0.0F);
    Samples heard = fill();
    const Samples more = fill();
    heard.insert(heard.end(), more.begin(), more.end());
    int worst = 5000 - heard[0];
    for (std::size_t i = 1; i < heard.size(); ++i) {
        worst = std::max(worst, std::abs(heard[i] - heard[i - 1]));
    }
    EXPECT_LT(worst, 15);
    EXPECT_EQ(heard.back(), 0);
    feed.setGain(1.0F);
    fill();
    fill();
    EXPECT_EQ(fill(), Samples(PERIOD, 10000));
}

TEST_F(Feed, TheVolumeRoundsToTheNearestStep) {
    constexpr float third = 1.0F / 3;
    feed.setGain(third);
    feed.beginStream(1);
    feed.allow(1);
    const Samples samples = counting(-static_cast<int>(PERIOD) / 2, PERIOD);
    feed.write(samples);
    const Samples heard = fill();
    for (std::size_t i = 0; i < PERIOD; ++i) {
        EXPECT_EQ(heard[i], std::lround(samples[i] / 3.0)) << samples[i];
    }
}

TEST_F(Feed, ExtremeSamplesDontOverflow) {
    feed.beginStream(1);
    feed.allow(1);
    feed.write(Samples(PERIOD, -32768));
    feed.write(Samples(PERIOD, 32767));
    EXPECT_EQ(fill(), Samples(PERIOD, -32768));
    EXPECT_EQ(fill(), Samples(PERIOD, 32767));
}

TEST_F(Feed, StereoFramesStayTogether) {
    feed.setFormat(2, 44100);
    feed.beginStream(1);
    feed.allow(1);
    Samples frames;
    for (int i = 0; i < 3000; ++i) {
        frames.push_back(static_cast<std::int16_t>(i));
        frames.push_back(static_cast<std::int16_t>(-i));
    }
    feed.write(frames);
    const Samples got = fill();
    EXPECT_TRUE(std::equal(got.begin(), got.end(), frames.begin()));
    feed.allow(0);
    fill();
    feed.allow(1);
    const Samples in = fill();
    EXPECT_EQ(support::equalLength(in, 2 * FADE, frames, PERIOD), in.size() - 2 * FADE);
}

TEST_F(Feed, TellsWhatIsHeardAndWhen) {
    feed.beginStream(1);
    feed.allow(1);
    feed.write(counting(1, 700));
    const auto now = SampleFeed::Clock::now();
    Samples target(PERIOD);
    feed.fill(target);
    EXPECT_EQ(feed.heardFrame(now), 0U) << "nothing has been heard yet";
    feed.setClock(100, now, true);
    EXPECT_EQ(feed.heardFrame(now), 100U);
    EXPECT_EQ(feed.heardFrame(now - std::chrono::seconds(1)), 100U);
    EXPECT_EQ(feed.heardFrame(now + std::chrono::milliseconds(2)), 100U + 88);
    EXPECT_EQ(feed.heardFrame(now + std::chrono::seconds(1)), PERIOD) << "no more was taken";
    feed.setClock(100, now, false);
    EXPECT_EQ(feed.heardFrame(now + std::chrono::seconds(1)), 100U) << "it stands";
    feed.fill(target);
    feed.fill(target);
    feed.setClock(feed.deviceFrame(), now, true);
    EXPECT_EQ(feed.heardFrame(now), 700U) << "silence isn't the track";
}

TEST_F(Feed, TakesBackWhatHasNotBeenHeard) {
    feed.beginStream(1);
    feed.allow(1);
    feed.write(counting(1, 3000));
    Samples target(2000);
    feed.fill(target);
    EXPECT_FALSE(feed.hasChanged());
    feed.allow(0);
    EXPECT_TRUE(feed.hasChanged());
    EXPECT_EQ(feed.takeBack(500), 500U);
    EXPECT_EQ(feed.readIndex(), 500U);
    Samples fade(1000, 12345);
    EXPECT_EQ(feed.take(fade), FADE);
    EXPECT_NEAR(fade[0], 501 * 128.0 / 129, 1);
    EXPECT_LT(fade[FADE - 1], 10);
    EXPECT_FALSE(feed.hasChanged());
    EXPECT_TRUE(feed.isSilent());
    EXPECT_EQ(feed.take(fade), 0U);
    feed.allow(1);
    EXPECT_EQ(feed.takeBack(550), 500 + FADE) << "a fade is heard to its end";
    EXPECT_EQ(feed.take(target), 2000U);
    EXPECT_EQ(target[FADE], 501) << "and what was faded comes once more";
    EXPECT_EQ(feed.deviceFrame(), 500 + FADE + 2000);
}

TEST_F(Feed, TheVolumeStepsOnFromWhereItWasTakenBack) {
    feed.beginStream(1);
    feed.allow(1);
    feed.write(Samples(4000, 10000));
    Samples target(1500);
    feed.fill(target);
    feed.setGain(0.0F);
    EXPECT_TRUE(feed.hasChanged());
    feed.takeBack(1000);
    feed.fill(target); // a ramp of 882 frames from 1000 on
    EXPECT_FALSE(feed.hasChanged());
    feed.setGain(1.0F);
    feed.takeBack(1441);
    feed.fill(target);
    EXPECT_NEAR(target[0], 5000, 20);
    EXPECT_NEAR(target[440], 10000, 20);
    EXPECT_TRUE(std::is_sorted(target.begin(), target.end()));
}

TEST_F(Feed, AnotherStreamFollowsTheFadeOfWhatWasTakenBack) {
    feed.beginStream(1);
    feed.allow(1);
    feed.write(Samples(3000, 1000));
    Samples target(2500);
    feed.fill(target);
    feed.allow(2);
    feed.takeBack(700);
    Samples fade(1000);
    EXPECT_EQ(feed.take(fade), FADE);
    EXPECT_EQ(feed.take(fade), 0U);
    EXPECT_TRUE(feed.isStarving());
    feed.beginStream(2);
    feed.write(counting(1, 100));
    EXPECT_EQ(feed.take(fade), 100U);
    EXPECT_EQ(fade[0], 1);
    EXPECT_EQ(feed.space(), 4096U - 100) << "the old stream is gone";
    const auto now = SampleFeed::Clock::now();
    feed.setClock(600, now, false);
    EXPECT_EQ(feed.heardFrame(now), 600U);
    feed.setClock(700 + FADE + 50, now, false);
    EXPECT_EQ(feed.heardFrame(now), 3050U);
}

TEST_F(Feed, ANewDeviceBeginsWithWhatTheOldOneNeverPlayed) {
    feed.beginStream(1);
    feed.allow(1);
    feed.write(counting(1, 3000));
    Samples target(2000);
    feed.fill(target);
    feed.setClock(1200, SampleFeed::Clock::now(), false);
    feed.endDevice();
    EXPECT_EQ(feed.deviceFrame(), 0U);
    EXPECT_EQ(feed.heardFrame(SampleFeed::Clock::now()), 1200U);
    EXPECT_EQ(feed.take(target), 1800U + FADE);
    EXPECT_EQ(target[FADE], 1201);
}

TEST_F(Feed, ThreeThreadsAtOnce) {
    // One thread for the device, one for the user's commands; this one is the decoder thread.
    std::atomic<bool> done{false};
    std::atomic<std::uint64_t> stream{1};
    feed.beginStream(1);
    feed.allow(1);
    std::thread device([&] {
        Samples target(PERIOD);
        for (int i = 0; !done; ++i) {
            feed.fill(target);
            feed.setClock(feed.deviceFrame() - PERIOD, SampleFeed::Clock::now(), true);
            if (i % 4 == 0) {
                feed.takeBack(feed.deviceFrame() - PERIOD / 2);
            }
        }
    });
    std::thread user([&] {
        for (int i = 0; !done; ++i) {
            feed.allow(i % 3 == 0 ? 0 : stream.load());
            feed.setGain(static_cast<float>(i % 100) / 100.0F);
            const std::uint64_t heard = feed.heardFrame(SampleFeed::Clock::now());
            EXPECT_LE(heard, feed.writeIndex());
        }
    });
    const Samples block(100, 1);
    for (int i = 0; i < 200000; ++i) {
        if (feed.space() >= block.size()) {
            feed.write(block);
        }
        if (i % 1000 == 0) {
            feed.beginStream(++stream);
        }
    }
    done = true;
    device.join();
    user.join();
}

} // namespace

} // namespace zvonivec
