// The way to the device for systems without PulseAudio's protocol: SDL, whose device writes a file
// here, at the pace of the sound.

#include "tests/engine/engine_under_test.h"
#include "tests/engine/sound_test.h"
#include "tests/support/disturbance.h"

#include <cstdlib>

namespace zvonivec {

namespace {

using support::Samples;

class SdlSound : public testing::Test {
protected:
    void SetUp() override {
        setenv("PULSE_SERVER", ("unix:" + folder.file("nothing")).c_str(), 1);
        setenv("SDL_AUDIODRIVER", "disk", 1);
        setenv("SDL_DISKAUDIOFILE", folder.file("device").c_str(), 1);
        ASSERT_TRUE(support::encodeNoise(path, 3, {"-b", "128"}, RATE, 2, 1));
        expected = support::decodeWithMpg123(path);
        engine.engine->settings().setVolume(100);
        engine.open(path);
    }
    void TearDown() override {
        unsetenv("PULSE_SERVER");
        unsetenv("SDL_AUDIODRIVER");
        unsetenv("SDL_DISKAUDIOFILE");
    }

    [[nodiscard]] Samples written() const {
        return support::samplesFromFile(folder.file("device"));
    }

    support::TemporaryFolder folder;
    const std::string path = folder.file("noise.mp3");
    Samples expected;
    EngineUnderTest engine;
};

TEST_F(SdlSound, IsTheDecodedFile) {
    engine.controls().play();
    ASSERT_TRUE(engine.runUntilStopped());
    ASSERT_TRUE(support::waitUntil([&] { return written().size() > expected.size(); }));
    engine.queue.runFor(300ms);
    const Samples all = written();
    const auto begin = support::findIn(all, part(expected, 0, KEY_LENGTH));
    ASSERT_TRUE(begin);
    EXPECT_EQ(support::equalLength(all, *begin, expected, 0), expected.size());
    EXPECT_EQ(engine.errors, 0);
}

TEST_F(SdlSound, PausesWithin40MillisecondsAndLosesNothing) {
    engine.controls().play();
    ASSERT_TRUE(engine.queue.runUntil([&] { return engine.controls().currentPosition() > 0.5; }));
    const std::size_t paused = written().size();
    engine.controls().pause();
    engine.queue.runFor(300ms);
    const Samples before = written();
    EXPECT_LE(support::behindLastSound(before), paused + promptly(40ms));
    const auto begin = support::findIn(before, part(expected, 0, KEY_LENGTH));
    ASSERT_TRUE(begin);
    const std::size_t first = support::equalLength(before, *begin, expected, 0);
    ASSERT_LT(first, expected.size());
    engine.controls().play();
    ASSERT_TRUE(engine.runUntilStopped());
    engine.queue.runFor(300ms);
    // A device that was closed meanwhile has begun its file anew.
    const Samples all = written();
    const auto after = support::findIn(all, part(expected, first, KEY_LENGTH));
    ASSERT_TRUE(after) << "the track doesn't go on where it was paused";
    EXPECT_EQ(support::equalLength(all, *after, expected, first), expected.size() - first);
}

TEST_F(SdlSound, RepeatsWithoutAGap) {
    int ends = 0;
    engine.onState = [&](PlayState state) {
        if (state == PlayState::stopped && ++ends == 1) {
            engine.controls().play();
        }
    };
    const auto attempt = [&] {
        ends = 0;
        engine.controls().play();
        EXPECT_TRUE(engine.queue.runUntil([&] { return ends == 2; }));
        engine.queue.runFor(300ms);
        const Samples all = written();
        const auto begin = support::findIn(all, part(expected, 0, KEY_LENGTH));
        EXPECT_TRUE(begin);
        const std::size_t first = begin ? support::equalLength(all, *begin, expected, 0) : 0;
        const std::size_t second =
            begin ? support::equalLength(all, *begin + expected.size(), expected, 0) : 0;
        engine.queue.runFor(2s); // the next attempt has a device and a file of its own
        return first == expected.size() && second == expected.size()
                   ? std::string()
                   : "gap after " + std::to_string(first) + " or " + std::to_string(second);
    };
    EXPECT_EQ(support::attemptWhileDisturbed(4, attempt), "");
}

} // namespace

} // namespace zvonivec
