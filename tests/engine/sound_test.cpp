// The whole way of the sound, on the real device: what the server's sink plays is recorded and
// compared with what the mpg123 program makes of the file.

#include "tests/engine/engine_under_test.h"
#include "tests/support/mp3_samples.h"
#include "tests/support/process.h"
#include "tests/support/processor_time.h"
#include "tests/support/pulse_server.h"
#include "tests/support/recording.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <unistd.h>

namespace zvonivec {

namespace {

using namespace std::chrono_literals;
using support::Samples;

constexpr std::size_t RATE = 44100;
/// Samples by which a place in the noise is told from every other.
constexpr std::size_t KEY_LENGTH = 200;

/// Samples of a stretch of time, both channels.
constexpr std::size_t samplesOf(std::chrono::milliseconds time) {
    return static_cast<std::size_t>(time.count()) * RATE / 1000 * 2;
}

/// How much of a recording may go by before a command is heard. A build with sanitizers mixes late.
constexpr std::size_t promptly(std::chrono::milliseconds time) {
    return samplesOf(support::SLOWNESS > 1 ? time * 3 : time);
}

Samples part(const Samples& all, std::size_t from, std::size_t count) {
    from = std::min(from, all.size());
    count = std::min(count, all.size() - from);
    return {all.begin() + static_cast<std::ptrdiff_t>(from),
            all.begin() + static_cast<std::ptrdiff_t>(from + count)};
}

class Sound : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(server.running());
        server.useInThisProcess();
        engine.engine->settings().setVolume(100);
    }

    /// A file of noise that states its padding, so that its length is that of the noise.
    std::string noiseFile(double seconds, unsigned seed = 1) {
        std::string path = folder.file("noise" + std::to_string(seed) + ".mp3");
        EXPECT_TRUE(support::encodeNoise(path, seconds, {"-b", "128"}, RATE, 2, seed));
        return path;
    }

    support::TemporaryFolder folder;
    support::PulseServer server;
    EngineUnderTest engine;
};

TEST_F(Sound, IsTheDecodedFileAtFullVolume) {
    const std::string path = noiseFile(2);
    const Samples expected = support::decodeWithMpg123(path);
    ASSERT_EQ(expected.size(), 4 * RATE);
    const support::Recording recording(server);
    engine.open(path);
    engine.controls().play();
    ASSERT_TRUE(engine.runUntilStopped());
    ASSERT_TRUE(recording.waitForSilence());
    const Samples heard = recording.samples();
    const auto start = support::findIn(heard, part(expected, 0, KEY_LENGTH));
    ASSERT_TRUE(start);
    const support::Match match = support::follow(heard, *start, expected, 0);
    EXPECT_EQ(match.length, expected.size());
    EXPECT_EQ(support::firstSound(heard), support::firstSound(expected) + *start);
    EXPECT_EQ(support::behindLastSound(heard),
              match.end - expected.size() + support::behindLastSound(expected));
}

TEST_F(Sound, IsHeardSoonAfterPlay) {
    const std::string path = noiseFile(1);
    const support::Recording recording(server);
    engine.open(path);
    const std::size_t before = recording.frames();
    engine.controls().play();
    ASSERT_TRUE(support::waitUntil([&] {
        return support::firstSound(recording.samples(), before * 2) < recording.samples().size();
    }));
    const std::size_t heard = support::firstSound(recording.samples(), before * 2);
    RecordProperty("milliseconds", static_cast<int>((heard / 2 - before) * 1000 / RATE));
    EXPECT_LT(heard - before * 2, promptly(150ms));
}

TEST_F(Sound, PausesPromptlyAndResumesWithoutLossOrRepetition) {
    const std::string path = noiseFile(3);
    const Samples expected = support::decodeWithMpg123(path);
    const support::Recording recording(server);
    engine.open(path);
    engine.controls().play();
    engine.queue.runUntil([&] { return engine.controls().currentPosition() > 0.7; });
    const std::size_t paused = recording.frames();
    engine.controls().pause();
    EXPECT_EQ(engine.engine->playState(), PlayState::paused);
    const double position = engine.controls().currentPosition();
    ASSERT_TRUE(recording.waitForSilence());
    const std::size_t silent = support::behindLastSound(recording.samples()) / 2;
    RecordProperty("milliseconds", static_cast<int>((silent - paused) * 1000 / RATE));
    EXPECT_LT(silent, paused + promptly(100ms) / 2);
    EXPECT_NEAR(engine.controls().currentPosition(), position, 0.1);
    recording.waitFor(300ms);
    EXPECT_EQ(support::behindLastSound(recording.samples()) / 2, silent);

    engine.controls().play();
    ASSERT_TRUE(engine.runUntilStopped());
    ASSERT_TRUE(recording.waitForSilence());
    const Samples heard = recording.samples();
    const auto start = support::findIn(heard, part(expected, 0, KEY_LENGTH));
    ASSERT_TRUE(start);
    // The two fades, and the silence between them, are all that stands in the middle.
    const std::size_t first = support::follow(heard, *start, expected, 0).length;
    ASSERT_LT(first, expected.size());
    const auto second = support::findIn(heard, part(expected, first, KEY_LENGTH), silent * 2);
    ASSERT_TRUE(second) << "what follows the pause isn't what came before it";
    EXPECT_EQ(support::follow(heard, *second, expected, first).length, expected.size() - first);
    EXPECT_NEAR(position * RATE * 2, static_cast<double>(first), 0.1 * RATE * 2);
}

TEST_F(Sound, GoesOnAfterAPauseThatClosedTheDevice) {
    const std::string path = noiseFile(2);
    const Samples expected = support::decodeWithMpg123(path);
    const support::Recording recording(server);
    engine.open(path);
    engine.controls().play();
    engine.queue.runUntil([&] { return engine.controls().currentPosition() > 0.5; });
    EXPECT_EQ(server.playingStreams(), 1);
    engine.controls().pause();
    ASSERT_TRUE(support::waitUntil([&] { return server.playingStreams() == 0; }))
        << "an idle player keeps the device";
    engine.controls().play();
    ASSERT_TRUE(engine.runUntilStopped());
    ASSERT_TRUE(recording.waitForSilence());
    const Samples heard = recording.samples();
    const auto start = support::findIn(heard, part(expected, 0, KEY_LENGTH));
    ASSERT_TRUE(start);
    const support::Match first = support::follow(heard, *start, expected, 0);
    const auto second = support::findIn(heard, part(expected, first.length, KEY_LENGTH), first.end);
    ASSERT_TRUE(second);
    EXPECT_EQ(support::follow(heard, *second, expected, first.length).length,
              expected.size() - first.length);
    EXPECT_EQ(engine.errors, 0);
}

TEST_F(Sound, JumpsToTheSampleAskedFor) {
    const std::string path = noiseFile(4);
    const Samples expected = support::decodeWithMpg123(path);
    const support::Recording recording(server);
    engine.open(path);
    engine.controls().setCurrentPosition(3.0); // while stopped
    EXPECT_EQ(engine.controls().currentPosition(), 3.0);
    engine.controls().play();
    engine.queue.runUntil([&] { return engine.controls().currentPosition() > 3.2; });
    engine.controls().setCurrentPosition(1.0); // backwards, while playing
    EXPECT_EQ(engine.controls().currentPosition(), 1.0);
    engine.queue.runUntil([&] { return engine.controls().currentPosition() > 1.3; });
    engine.controls().pause();
    engine.controls().setCurrentPosition(2.0); // while paused
    EXPECT_EQ(engine.controls().currentPosition(), 2.0);
    EXPECT_EQ(engine.engine->playState(), PlayState::paused);
    engine.controls().play();
    engine.queue.runUntil([&] { return engine.controls().currentPosition() > 2.2; });
    engine.controls().stop();
    ASSERT_TRUE(recording.waitForSilence());
    const Samples heard = recording.samples();
    std::size_t after = 0;
    for (const std::size_t second : {3U, 1U, 2U}) {
        const auto at =
            support::findIn(heard, part(expected, second * RATE * 2, KEY_LENGTH), after);
        ASSERT_TRUE(at) << second;
        EXPECT_GT(support::follow(heard, *at, expected, second * RATE * 2).length,
                  samplesOf(150ms));
        after = *at + KEY_LENGTH;
    }
}

TEST_F(Sound, PositionIsWhatIsHeard) {
    const std::string path = noiseFile(3);
    const Samples expected = support::decodeWithMpg123(path);
    const support::Recording recording(server);
    engine.open(path);
    engine.controls().play();
    struct Moment {
        std::size_t frame;
        double position;
    };
    std::vector<Moment> moments;
    double last = 0;
    engine.queue.runUntil([&] {
        const double position = engine.controls().currentPosition();
        EXPECT_GE(position, last) << "time runs backwards";
        last = position;
        moments.push_back({recording.frames(), position});
        return position > 2.5;
    });
    engine.controls().stop();
    const Samples heard = recording.samples();
    const auto start = support::findIn(heard, part(expected, 0, KEY_LENGTH));
    ASSERT_TRUE(start);
    double worst = 0;
    for (const Moment& moment : moments) {
        if (moment.position > 0.1) {
            const double there =
                (static_cast<double>(moment.frame) - static_cast<double>(*start) / 2) / RATE;
            worst = std::max(worst, std::abs(there - moment.position));
        }
    }
    RecordProperty("milliseconds", static_cast<int>(worst * 1000));
    EXPECT_LT(worst, 0.1);
}

TEST_F(Sound, RepeatsWithoutAGap) {
    const std::string path = noiseFile(1);
    const Samples expected = support::decodeWithMpg123(path);
    const support::Recording recording(server);
    // One calm moment must do: on a busy machine the server itself makes gaps.
    std::size_t smallest = RATE;
    for (int attempt = 0; attempt < 4 && smallest != 0; ++attempt) {
        const std::size_t before = recording.frames() * 2;
        int ends = 0;
        engine.onState = [&](PlayState state) {
            if (state == PlayState::stopped && ++ends <= 2) {
                engine.controls().play();
            }
        };
        engine.open(path);
        engine.controls().play();
        ASSERT_TRUE(engine.queue.runUntil([&] { return ends == 3; }));
        ASSERT_TRUE(recording.waitForSilence());
        const Samples heard = recording.samples();
        std::size_t end = before;
        std::size_t gap = 0;
        for (int round = 0; round < 3; ++round) {
            const auto start = support::findIn(heard, part(expected, 0, KEY_LENGTH), end);
            ASSERT_TRUE(start) << round;
            const support::Match match = support::follow(heard, *start, expected, 0);
            ASSERT_EQ(match.length, expected.size());
            gap += round > 0 ? *start - end : 0;
            end = match.end;
        }
        smallest = std::min(smallest, gap);
    }
    RecordProperty("samples", static_cast<int>(smallest));
    EXPECT_EQ(smallest, 0U) << "samples of silence between the end and the start";
}

TEST_F(Sound, IsScaledByTheVolume) {
    const std::string path = noiseFile(1);
    const Samples expected = support::decodeWithMpg123(path);
    for (const auto& [volume, factor] : {std::pair(50, 0.125), std::pair(0, 0.0)}) {
        const support::Recording recording(server);
        engine.engine->settings().setVolume(volume);
        engine.open(path);
        engine.controls().play();
        ASSERT_TRUE(engine.runUntilStopped());
        recording.waitFor(200ms);
        const Samples heard = recording.samples();
        if (factor == 0.0) {
            EXPECT_EQ(support::firstSound(heard), heard.size());
            continue;
        }
        Samples scaled = expected;
        for (std::int16_t& sample : scaled) {
            sample = static_cast<std::int16_t>(std::lround(sample * factor));
        }
        const auto start = support::findIn(heard, part(scaled, 0, KEY_LENGTH), 0, 1);
        ASSERT_TRUE(start);
        EXPECT_EQ(support::follow(heard, *start, scaled, 0, true, 1).length, scaled.size());
    }
}

TEST_F(Sound, VolumeStepsDontClick) {
    // Of a low tone, no sample differs much from the one before, unless something clicks.
    Samples tone(3 * RATE * 2);
    for (std::size_t i = 0; i < tone.size(); ++i) {
        tone[i] = static_cast<std::int16_t>(
            std::lround(20000 * std::sin(static_cast<double>(i) * 3.14159265 * 50 / RATE)));
    }
    support::writeWav(folder.file("tone.wav"), tone);
    const std::string path = folder.file("tone.mp3");
    ASSERT_EQ(support::run({"lame", "--quiet", "-b", "192", folder.file("tone.wav"), path}), 0);
    const support::Recording recording(server);
    engine.open(path);
    engine.controls().play();
    for (const int volume : {0, 100, 40, 90, 10, 100}) {
        engine.queue.runFor(120ms);
        engine.engine->settings().setVolume(volume);
    }
    engine.queue.runFor(150ms);
    engine.controls().pause();
    engine.queue.runFor(150ms);
    engine.controls().play();
    engine.queue.runFor(150ms);
    engine.controls().stop();
    ASSERT_TRUE(recording.waitForSilence());
    const Samples heard = recording.samples();
    int worst = 0;
    for (std::size_t i = support::firstSound(heard); i + 2 < heard.size(); ++i) {
        worst = std::max(worst, std::abs(heard[i + 2] - heard[i]));
    }
    EXPECT_GT(worst, 100) << "nothing was heard";
    EXPECT_LT(worst, 500);
}

TEST_F(Sound, AnotherFileFollowsAtOnce) {
    const std::string first = noiseFile(5, 1);
    const std::string second = noiseFile(1, 2);
    const Samples expected = support::decodeWithMpg123(second);
    const support::Recording recording(server);
    engine.open(first);
    engine.controls().play();
    engine.queue.runUntil([&] { return engine.controls().currentPosition() > 0.3; });
    engine.states.clear();
    engine.open(second);
    engine.queue.runWaiting();
    EXPECT_TRUE(engine.states.empty()) << "loading a file raises no event";
    EXPECT_EQ(engine.engine->playState(), PlayState::ready);
    engine.controls().play();
    ASSERT_TRUE(engine.runUntilStopped());
    ASSERT_TRUE(recording.waitForSilence());
    const Samples heard = recording.samples();
    const auto start = support::findIn(heard, part(expected, 0, KEY_LENGTH));
    ASSERT_TRUE(start);
    EXPECT_EQ(support::follow(heard, *start, expected, 0).length, expected.size());
    EXPECT_EQ(engine.stops(), 1);
    EXPECT_EQ(engine.errors, 0);
}

TEST_F(Sound, LosingTheServerIsOneErrorAndTheNextFilePlays) {
    const std::string path = noiseFile(3);
    engine.open(path);
    engine.controls().play();
    engine.queue.runUntil([&] { return engine.controls().currentPosition() > 0.3; });
    server.kill();
    ASSERT_TRUE(engine.queue.runUntil([&] { return engine.errors > 0; }));
    EXPECT_NE(engine.engine->playState(), PlayState::playing);
    engine.queue.runFor(300ms);
    EXPECT_EQ(engine.errors, 1);
    EXPECT_EQ(engine.stops(), 0);

    engine.open(path);
    engine.controls().play(); // nothing to play to
    ASSERT_TRUE(engine.queue.runUntil([&] { return engine.errors > 1; }));
    engine.queue.runFor(100ms);
    EXPECT_EQ(engine.errors, 2);

    server.restart();
    ASSERT_TRUE(server.running());
    const support::Recording recording(server);
    engine.open(path);
    engine.controls().play();
    ASSERT_TRUE(engine.runUntilStopped());
    EXPECT_EQ(engine.errors, 2);
    ASSERT_TRUE(recording.waitForSilence());
    EXPECT_TRUE(
        support::findIn(recording.samples(), part(support::decodeWithMpg123(path), 0, KEY_LENGTH)));
}

TEST_F(Sound, LosingTheServerInAPauseIsNoErrorWhenItComesBack) {
    const std::string path = noiseFile(2);
    engine.open(path);
    engine.controls().play();
    engine.queue.runUntil([&] { return engine.controls().currentPosition() > 0.3; });
    engine.controls().pause();
    server.restart();
    ASSERT_TRUE(server.running());
    engine.controls().play();
    ASSERT_TRUE(engine.runUntilStopped());
    EXPECT_EQ(engine.errors, 0);
}

TEST_F(Sound, AServerThatHangsHoldsNobodyUp) {
    const std::string path = noiseFile(3);
    const auto seconds = [](const auto& action) {
        const auto begin = std::chrono::steady_clock::now();
        action();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    };
    const auto command = [&](const char* when) {
        PlayerEngine& player = *engine.engine;
        EXPECT_LT(seconds([&] { player.controls().pause(); }), 0.1) << when;
        EXPECT_LT(seconds([&] { player.controls().setCurrentPosition(1); }), 0.1) << when;
        EXPECT_LT(seconds([&] { player.controls().play(); }), 0.1) << when;
        EXPECT_LT(seconds([&] { player.controls().currentPosition(); }), 0.1) << when;
        EXPECT_LT(seconds([&] { player.controls().stop(); }), 0.1) << when;
        EXPECT_LT(seconds([&] { player.setURL(path); }), 0.1) << when;
        EXPECT_LT(seconds([&] { player.currentMedia().isReadOnlyItem("Bitrate"); }), 0.1) << when;
        EXPECT_LT(seconds([&] { player.setURL(""); }), 0.1) << when;
        EXPECT_LT(seconds([&] { engine.engine.reset(); }), 0.8) << when;
        server.thaw();
        // What hung comes to its end by itself.
        ASSERT_TRUE(support::waitUntil([&] { return server.playingStreams() == 0; })) << when;
        engine.engine = createPlayerEngine(engine.queue.poster());
        engine.engine->settings().setAutoStart(false);
    };

    engine.open(path);
    engine.controls().play();
    engine.queue.runUntil([&] { return engine.controls().currentPosition() > 0.3; });
    server.freeze();
    command("while playing");

    engine.open(path);
    server.freeze();
    engine.controls().play();
    engine.queue.runFor(200ms);
    command("while the device is opened");

    engine.open(path);
    engine.controls().play();
    engine.queue.runUntil([&] { return engine.controls().currentPosition() > 0.3; });
    engine.controls().pause();
    server.freeze();
    engine.queue.runFor(2s); // an idle player closes the device
    command("while the device is closed");

    engine.open(path);
    engine.controls().play();
    engine.queue.runUntil([&] { return engine.controls().currentPosition() > 0.3; });
    server.freeze();
    EXPECT_LT(seconds([&] { engine.engine.reset(); }), 0.8) << "while playing, at once";
    server.thaw();
    ASSERT_TRUE(support::waitUntil([&] { return server.playingStreams() == 0; }));
    engine.engine = createPlayerEngine(engine.queue.poster());

    // And where it answers again, it plays.
    engine.errors = 0;
    const Samples expected = support::decodeWithMpg123(path);
    const support::Recording recording(server);
    engine.engine->settings().setAutoStart(false);
    engine.engine->settings().setVolume(100);
    engine.open(path);
    engine.controls().play();
    EXPECT_TRUE(support::waitUntil([&] {
        return support::findIn(recording.samples(), part(expected, 0, KEY_LENGTH)).has_value();
    }));
}

using SoundDeathTest = Sound;

TEST_F(SoundDeathTest, AServerThatHangsDoesNotKeepTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto endWhileItHangs = [&] {
        engine.open(noiseFile(3));
        engine.controls().play();
        engine.queue.runUntil([&] { return engine.controls().currentPosition() > 0.3; });
        server.freeze();
        alarm(5);
        engine.engine.reset();
        std::exit(42);
    };
    EXPECT_EXIT(endWhileItHangs(), testing::ExitedWithCode(42), "");
}

TEST_F(Sound, DeletedAndReplacedFilesPlayOn) {
    const std::string path = noiseFile(2);
    const Samples expected = support::decodeWithMpg123(path);
    const support::Recording recording(server);
    engine.open(path);
    engine.controls().play();
    ASSERT_EQ(std::rename(noiseFile(1, 2).c_str(), path.c_str()), 0);
    ASSERT_EQ(std::remove(path.c_str()), 0);
    ASSERT_TRUE(engine.runUntilStopped());
    ASSERT_TRUE(recording.waitForSilence());
    const Samples heard = recording.samples();
    const auto start = support::findIn(heard, part(expected, 0, KEY_LENGTH));
    ASSERT_TRUE(start);
    EXPECT_EQ(support::follow(heard, *start, expected, 0).length, expected.size());
}

TEST_F(Sound, ATruncatedFileIsOneError) {
    const std::string path = noiseFile(20);
    engine.open(path);
    engine.controls().play();
    engine.queue.runUntil([&] { return engine.controls().currentPosition() > 0.2; });
    ASSERT_EQ(support::run({"truncate", "-s", "40000", path}), 0);
    ASSERT_TRUE(engine.queue.runUntil([&] { return engine.errors > 0; }));
    engine.queue.runFor(200ms);
    EXPECT_EQ(engine.errors, 1);
    EXPECT_EQ(engine.stops(), 0);
}

TEST_F(Sound, OtherFormatsPlayToo) {
    for (const int fileRate : {8000, 22050, 48000}) {
        const std::string path = folder.file("format.mp3");
        ASSERT_TRUE(support::encodeNoise(
            path, 1, {"-b", "32", "--resample", std::to_string(fileRate / 1000.0)}, fileRate, 1));
        engine.open(path);
        const auto begin = std::chrono::steady_clock::now();
        engine.controls().play();
        ASSERT_TRUE(engine.runUntilStopped()) << fileRate;
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
        EXPECT_NEAR(took.count(), 1.0, 0.4) << fileRate;
    }
    EXPECT_EQ(engine.errors, 0);
}

TEST_F(Sound, TheStreamBearsTheProgramsName) {
    engine.open(noiseFile(2));
    engine.controls().play();
    engine.queue.runUntil([&] { return engine.controls().currentPosition() > 0.1; });
    EXPECT_NE(server.describeStreams().find("Zvonivec MP3 Player 0.0.7"), std::string::npos);
}

} // namespace

} // namespace zvonivec
