// Compares recordings of the sound device with the samples that the mpg123 program decodes from the
// file.

#include "tests/engine/sound_test.h"
#include "tests/support/disturbance.h"

#include <cmath>
#include <utility>
#include <vector>

namespace zvonivec {

namespace {

using support::PulseServer;
using support::Samples;

constexpr auto WHOLE = support::Recording::Wanted::whole;

class SoundOn : public Sound, public testing::WithParamInterface<PulseServer::Kind> {
protected:
    SoundOn() : Sound(GetParam()) {}

    /// Notes a command that is heard too late. Both places are frames of the recording.
    void notePromptness(std::size_t given, std::size_t heard, std::chrono::milliseconds limit,
                        const std::string& what) {
        if (heard < given) {
            noteMissing(what);
            return;
        }
        const std::size_t milliseconds = (heard - given) * 1000 / RATE;
        RecordProperty(what, static_cast<int>(milliseconds));
        if ((heard - given) * 2 >= promptly(limit)) {
            late_ += what + ": " + std::to_string(milliseconds) + " ms; ";
        }
    }

    void noteMissing(const std::string& what) { late_ += what + " isn't heard; "; }

    /// Says what has come too late since the last call.
    std::string takeLate() { return std::exchange(late_, {}); }

    /// Waits until a sound after a frame of the recording has been recorded for a while.
    [[nodiscard]] static bool waitForSound(const support::Recording& recording, std::size_t frame) {
        return support::waitUntil([&] {
            const Samples all = recording.samples();
            return support::firstSound(all, frame * 2) + samplesOf(150ms) < all.size();
        });
    }

    std::string late_;
};

std::string nameOf(const testing::TestParamInfo<PulseServer::Kind>& info) {
    switch (info.param) {
    case PulseServer::Kind::rewinding:
        return "PulseAudio";
    case PulseServer::Kind::noRewinding:
        return "PulseAudioWithoutRewinds";
    case PulseServer::Kind::pipeWire:
        return "PipeWire";
    }
    return "";
}

INSTANTIATE_TEST_SUITE_P(Servers, SoundOn,
                         testing::Values(PulseServer::Kind::rewinding,
                                         PulseServer::Kind::noRewinding,
                                         PulseServer::Kind::pipeWire),
                         nameOf);

TEST_P(SoundOn, IsTheDecodedFileAtFullVolume) {
    const std::string path = noiseFile(2);
    const Samples expected = support::decodeWithMpg123(path);
    ASSERT_EQ(expected.size(), 4 * RATE);
    const support::Recording recording(server, WHOLE);
    engine.open(path);
    const Samples recorded = playToTheEnd(recording);
    const auto heard = hear(recorded, expected);
    ASSERT_TRUE(heard);
    EXPECT_EQ(heard->match.length, expected.size());
    if (missedAtStart() == 0) {
        EXPECT_EQ(support::firstSound(recorded), support::firstSound(expected) + heard->begin);
    }
    EXPECT_EQ(support::behindLastSound(recorded),
              heard->match.end - expected.size() + support::behindLastSound(expected));
}

// The recorder is served in blocks of 10 ms, and knows the moment of a command no better.
constexpr auto RECORDED_BLOCK = 10ms;

TEST_P(SoundOn, IsHeardSoonAfterPlay) {
    const std::string path = noiseFile(30);
    const Samples expected = support::decodeWithMpg123(path);
    const auto attempt = [&] {
        EXPECT_TRUE(support::waitUntil([&] { return server.playingStreams() == 0; }));
        const support::Recording recording(server);
        std::optional<Heard> heard;
        const auto play = [&](std::size_t from, std::chrono::milliseconds limit,
                              const std::string& when) {
            const std::size_t before = recording.frames();
            engine.controls().play();
            EXPECT_TRUE(waitForSound(recording, before)) << when;
            heard = find(recording.samples(), expected, from, before * 2);
            if (heard) {
                // What the recording misses lies before the command, as far as it can tell.
                notePromptness(before, (heard->begin + missedAtStart()) / 2, limit + RECORDED_BLOCK,
                               when);
            } else {
                noteMissing(when);
            }
        };
        engine.open(path);
        play(0, 40ms, "afterOpening");
        engine.controls().stop();
        EXPECT_TRUE(recording.waitForSilence());
        play(0, 30ms, "afterStop");
        engine.controls().pause();
        EXPECT_TRUE(recording.waitForSilence());
        heard = heard ? find(recording.samples(), expected, 0, heard->begin) : heard;
        if (heard) {
            play(heard->match.length, 30ms, "afterPause");
        }
        engine.controls().stop();
        return takeLate();
    };
    EXPECT_EQ(support::attemptWhileDisturbed(6, attempt), "");
}

TEST_P(SoundOn, CommandsAreHeardWithin40Milliseconds) {
    constexpr auto limit = 40ms + RECORDED_BLOCK;
    const std::string path = noiseFile(40);
    const Samples expected = support::decodeWithMpg123(path);
    engine.open(path);
    const auto attempt = [&] {
        const support::Recording recording(server);
        EXPECT_TRUE(playUntil(2.6)); // the server has all it wants
        std::size_t given = recording.frames();
        engine.controls().setCurrentPosition(8);
        recording.waitFor(300ms);
        if (const auto sought = find(recording.samples(), expected, 8 * RATE * 2, given * 2)) {
            notePromptness(given, sought->begin / 2, limit, "seek");
        } else {
            noteMissing("seek");
        }

        given = recording.frames();
        engine.engine->settings().setVolume(0);
        recording.waitFor(300ms);
        const Samples quieter = recording.samples();
        // The track is as it was up to where the volume begins to move.
        if (const auto before = support::findIn(expected, part(quieter, given * 2, KEY_LENGTH))) {
            const std::size_t same = support::equalLength(quieter, given * 2, expected, *before);
            notePromptness(given, given + same / 2, limit, "volume");
        } else {
            noteMissing("the track when the volume changes");
        }
        // And 20 ms later it is silent.
        notePromptness(given, support::behindLastSound(quieter) / 2, limit + 20ms, "volumeReached");

        engine.engine->settings().setVolume(100);
        recording.waitFor(300ms);
        given = recording.frames();
        engine.controls().pause();
        EXPECT_TRUE(recording.waitForSilence());
        notePromptness(given, support::behindLastSound(recording.samples()) / 2, limit, "pause");

        engine.controls().play();
        recording.waitFor(300ms);
        given = recording.frames();
        engine.controls().stop();
        EXPECT_TRUE(recording.waitForSilence());
        notePromptness(given, support::behindLastSound(recording.samples()) / 2, limit, "stop");
        return takeLate();
    };
    EXPECT_EQ(support::attemptWhileDisturbed(6, attempt), "");
}

TEST_P(SoundOn, ResumesAfterAPauseWithoutLossOrRepetition) {
    const std::string path = noiseFile(3);
    const Samples expected = support::decodeWithMpg123(path);
    const support::Recording recording(server, WHOLE);
    engine.open(path);
    ASSERT_TRUE(playUntil(0.7));
    engine.controls().pause();
    EXPECT_EQ(engine.engine->playState(), PlayState::paused);
    const double position = engine.controls().currentPosition();
    ASSERT_TRUE(recording.waitForSilence());
    const std::size_t silent = support::behindLastSound(recording.samples()) / 2;
    // What is heard after the command counts.
    constexpr double late = static_cast<double>(promptly(100ms)) / 2 / RATE;
    EXPECT_NEAR(engine.controls().currentPosition(), position, late);
    recording.waitFor(300ms);
    EXPECT_EQ(support::behindLastSound(recording.samples()) / 2, silent);

    const Samples recorded = playToTheEnd(recording);
    const auto before = hear(recorded, expected);
    ASSERT_TRUE(before);
    // Between both parts are only the two fades and the silence.
    const std::size_t first = before->match.length;
    ASSERT_LT(first, expected.size());
    const auto after = hear(recorded, expected, first, silent * 2);
    ASSERT_TRUE(after) << "the track doesn't go on where it was paused";
    EXPECT_EQ(after->match.length, expected.size() - first);
    EXPECT_NEAR(position * RATE * 2, static_cast<double>(first), late * RATE * 2);
}

TEST_P(SoundOn, GoesOnAfterAPauseThatClosedTheDevice) {
    const std::string path = noiseFile(2);
    const Samples expected = support::decodeWithMpg123(path);
    const support::Recording recording(server, WHOLE);
    engine.open(path);
    ASSERT_TRUE(playUntil(0.5));
    EXPECT_EQ(server.playingStreams(), 1);
    engine.controls().pause();
    ASSERT_TRUE(support::waitUntil([&] { return server.playingStreams() == 0; }))
        << "an idle player keeps the device";
    const Samples recorded = playToTheEnd(recording);
    const auto before = hear(recorded, expected);
    ASSERT_TRUE(before);
    const std::size_t first = before->match.length;
    const auto after = hear(recorded, expected, first, before->match.end);
    ASSERT_TRUE(after);
    EXPECT_EQ(after->match.length, expected.size() - first);
    EXPECT_EQ(engine.errors, 0);
}

TEST_P(SoundOn, JumpsToTheSampleAskedFor) {
    const std::string path = noiseFile(4);
    const Samples expected = support::decodeWithMpg123(path);
    const support::Recording recording(server, WHOLE);
    engine.open(path);
    engine.controls().setCurrentPosition(3.0); // while stopped
    EXPECT_EQ(engine.controls().currentPosition(), 3.0);
    ASSERT_TRUE(playUntil(3.2));
    engine.controls().setCurrentPosition(1.0); // backwards, while playing
    EXPECT_EQ(engine.controls().currentPosition(), 1.0);
    engine.queue.runUntil([&] { return engine.controls().currentPosition() > 1.3; });
    engine.controls().pause();
    engine.controls().setCurrentPosition(2.0); // while paused
    EXPECT_EQ(engine.controls().currentPosition(), 2.0);
    EXPECT_EQ(engine.engine->playState(), PlayState::paused);
    ASSERT_TRUE(playUntil(2.2));
    engine.controls().stop();
    ASSERT_TRUE(recording.waitForSilence());
    const Samples recorded = recording.samples();
    std::size_t after = 0;
    for (const std::size_t second : {3U, 1U, 2U}) {
        const auto heard = hear(recorded, expected, second * RATE * 2, after);
        ASSERT_TRUE(heard) << second;
        EXPECT_GT(heard->match.length, samplesOf(150ms));
        after = heard->begin + KEY_LENGTH;
    }
}

TEST_P(SoundOn, PositionIsWhatIsHeard) {
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
    const auto heard = hear(recording.samples(), expected);
    ASSERT_TRUE(heard);
    double worst = 0;
    for (const Moment& moment : moments) {
        if (moment.position > 0.1) {
            const double there =
                (static_cast<double>(moment.frame) - static_cast<double>(heard->begin) / 2) / RATE;
            worst = std::max(worst, std::abs(there - moment.position));
        }
    }
    RecordProperty("milliseconds", static_cast<int>(worst * 1000));
    EXPECT_LT(worst, 0.1);
}

TEST_P(SoundOn, RepeatsWithoutAGap) {
    const std::string path = noiseFile(1);
    const Samples expected = support::decodeWithMpg123(path);
    const support::Recording recording(server, WHOLE);
    // One attempt without a gap is enough: on a busy machine the server itself makes gaps.
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
        const Samples recorded = recording.samples();
        std::size_t end = before;
        std::size_t gap = 0;
        for (int round = 0; round < 3; ++round) {
            const auto heard = hear(recorded, expected, 0, end);
            ASSERT_TRUE(heard) << round;
            ASSERT_EQ(heard->match.length, expected.size());
            gap += round > 0 ? heard->begin - end : 0;
            end = heard->match.end;
        }
        smallest = std::min(smallest, gap);
    }
    RecordProperty("samples", static_cast<int>(smallest));
    EXPECT_EQ(smallest, 0U) << "samples of silence between the end and the start";
}

TEST_P(SoundOn, IsScaledByTheVolume) {
    const std::string path = noiseFile(1);
    const Samples expected = support::decodeWithMpg123(path);
    for (const auto& [volume, factor] : {std::pair(50, 0.125), std::pair(0, 0.0)}) {
        const support::Recording recording(server, WHOLE);
        engine.engine->settings().setVolume(volume);
        engine.open(path);
        engine.controls().play();
        ASSERT_TRUE(engine.runUntilStopped());
        recording.waitFor(200ms);
        const Samples recorded = recording.samples();
        if (factor == 0.0) {
            EXPECT_EQ(support::firstSound(recorded), recorded.size());
            continue;
        }
        Samples scaled = expected;
        for (std::int16_t& sample : scaled) {
            sample = static_cast<std::int16_t>(std::lround(sample * factor));
        }
        const auto heard = hear(recorded, scaled, 0, 0, 1);
        ASSERT_TRUE(heard);
        EXPECT_EQ(heard->match.length, scaled.size());
    }
}

TEST_P(SoundOn, VolumeStepsDontClick) {
    // In a low tone neighbouring samples differ little, unless something clicks.
    Samples tone(3 * RATE * 2);
    for (std::size_t i = 0; i < tone.size(); ++i) {
        tone[i] = static_cast<std::int16_t>(
            std::lround(20000 * std::sin(static_cast<double>(i) * 3.14159265 * 50 / RATE)));
    }
    support::writeWav(folder.file("tone.wav"), tone);
    const std::string path = folder.file("tone.mp3");
    ASSERT_EQ(support::run({"lame", "--quiet", "-b", "192", folder.file("tone.wav"), path}), 0);
    engine.open(path);
    const auto largestStep = [&] {
        const support::Recording recording(server, WHOLE);
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
        EXPECT_TRUE(recording.waitForSilence());
        const Samples recorded = recording.samples();
        int largest = 0;
        for (std::size_t i = support::firstSound(recorded) + 2; i + 2 < recorded.size(); ++i) {
            // The start of a sound may be missed, and then begins in the middle of a wave.
            const bool starts = missedAtStart() != 0 && recorded[i] == 0 && recorded[i - 2] == 0;
            largest = std::max(largest, starts ? 0 : std::abs(recorded[i + 2] - recorded[i]));
        }
        EXPECT_GT(largest, 100) << "nothing was heard";
        return largest;
    };
    // A server that comes too late clicks by itself.
    EXPECT_EQ(support::attemptWhileDisturbed(6,
                                             [&] {
                                                 const int step = largestStep();
                                                 return step < 500
                                                            ? std::string()
                                                            : "step of " + std::to_string(step);
                                             }),
              "");
}

TEST_P(SoundOn, AnotherFileFollowsAtOnce) {
    const std::string first = noiseFile(5, 1);
    const std::string second = noiseFile(1, 2);
    const Samples expected = support::decodeWithMpg123(second);
    const support::Recording recording(server, WHOLE);
    engine.open(first);
    ASSERT_TRUE(playUntil(0.3));
    engine.states.clear();
    engine.open(second);
    engine.queue.runWaiting();
    EXPECT_TRUE(engine.states.empty()) << "loading a file raises no event";
    EXPECT_EQ(engine.engine->playState(), PlayState::ready);
    const Samples recorded = playToTheEnd(recording);
    const auto heard = hear(recorded, expected);
    ASSERT_TRUE(heard);
    EXPECT_EQ(heard->match.length, expected.size());
    EXPECT_EQ(engine.stops(), 1);
    EXPECT_EQ(engine.errors, 0);
}

TEST_P(SoundOn, OtherFormatsPlayToo) {
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

TEST_P(SoundOn, TheStreamBearsTheProgramsName) {
    engine.open(noiseFile(2));
    ASSERT_TRUE(playUntil(0.1));
    const std::string streams = server.describeStreams();
    for (const char* text :
         {"Zvonivec MP3 Player 0.0.7", "noise1.mp3", "\"music\"", "\"zvonivec\""}) {
        EXPECT_NE(streams.find(text), std::string::npos) << text << " in " << streams;
    }
}

} // namespace

} // namespace zvonivec
