// The engine on a real device: a private sound server whose sink is recorded.
#pragma once

#include "tests/engine/engine_under_test.h"
#include "tests/support/mp3_samples.h"
#include "tests/support/process.h"
#include "tests/support/processor_time.h"
#include "tests/support/pulse_server.h"
#include "tests/support/recording.h"

#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace zvonivec {

using namespace std::chrono_literals;

constexpr std::size_t RATE = 44100;
/// Samples that identify a place in the noise.
constexpr std::size_t KEY_LENGTH = 200;

/// Samples in a time, both channels.
constexpr std::size_t samplesOf(std::chrono::milliseconds time) {
    return static_cast<std::size_t>(time.count()) * RATE / 1000 * 2;
}

/// Samples of a recording that may pass before a command is heard. A build with sanitizers mixes
/// late.
constexpr std::size_t promptly(std::chrono::milliseconds time) {
    return samplesOf(support::SLOWNESS > 1 ? time * 3 : time);
}

inline support::Samples part(const support::Samples& all, std::size_t from, std::size_t count) {
    from = std::min(from, all.size());
    count = std::min(count, all.size() - from);
    return {all.begin() + static_cast<std::ptrdiff_t>(from),
            all.begin() + static_cast<std::ptrdiff_t>(from + count)};
}

class Sound : public testing::Test {
protected:
    explicit Sound(support::PulseServer::Kind kind = support::PulseServer::Kind::rewinding)
        : server(support::PulseServer::Sink(), kind) {}

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

    bool playUntil(double position) {
        engine.controls().play();
        return engine.queue.runUntil(
            [&] { return engine.controls().currentPosition() > position; });
    }

    /// Plays the loaded file to its end and returns the whole recording.
    support::Samples playToTheEnd(const support::Recording& recording) {
        engine.controls().play();
        EXPECT_TRUE(engine.runUntilStopped());
        EXPECT_TRUE(recording.waitForSilence());
        return recording.samples();
    }

    /// A stretch of a recording that equals a track from a sample on.
    struct Heard {
        std::size_t begin;    ///< in the recording
        support::Match match; ///< how far both are equal
    };

    /// Samples at a start that a recording may miss. Where a sink takes back silence that it has
    /// mixed, to begin at once, the recorder has that silence already.
    [[nodiscard]] std::size_t missedAtStart() const {
        return server.kind() == support::PulseServer::Kind::rewinding ? samplesOf(12ms) : 0;
    }

    /// Finds a track from a sample on in a recording, after a place. What the recording misses
    /// counts as there.
    [[nodiscard]] std::optional<Heard> find(const support::Samples& recorded,
                                            const support::Samples& track, std::size_t from = 0,
                                            std::size_t after = 0, int difference = 0) const {
        const std::size_t missed = missedAtStart();
        const auto key =
            support::findIn(recorded, part(track, from + missed, KEY_LENGTH), after, difference);
        if (!key) {
            return std::nullopt;
        }
        Heard heard{*key - std::min(*key, missed),
                    support::follow(recorded, *key, track, from + missed, true, difference)};
        heard.match.length += missed;
        return heard;
    }

    /// As find, and fails when the track isn't there.
    [[nodiscard]] std::optional<Heard> hear(const support::Samples& recorded,
                                            const support::Samples& track, std::size_t from = 0,
                                            std::size_t after = 0, int difference = 0) const {
        const auto heard = find(recorded, track, from, after, difference);
        EXPECT_TRUE(heard) << "not heard from sample " << from << " on";
        return heard;
    }

    support::TemporaryFolder folder;
    support::PulseServer server;
    EngineUnderTest engine;
};

} // namespace zvonivec
