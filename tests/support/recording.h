// What a sound server plays, recorded, and known sounds found in it.
#pragma once

#include "tests/support/process.h"
#include "tests/support/pulse_server.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace support {

/// Samples of 16 bits, channels alternating.
using Samples = std::vector<std::int16_t>;

/// Records a server's sink from the constructor on.
class Recording {
public:
    /// Returns when recording has begun.
    explicit Recording(const PulseServer& server);

    /// What has been recorded so far.
    [[nodiscard]] Samples samples() const;
    /// How many frames (samples per channel) those are.
    [[nodiscard]] std::size_t frames() const;
    /// Waits until so much more has been recorded.
    void waitFor(std::chrono::milliseconds time) const;
    /// Waits until what was last recorded has been silent for a while. False when it never is.
    [[nodiscard]] bool
    waitForSilence(std::chrono::milliseconds length = std::chrono::milliseconds(300),
                   std::chrono::milliseconds limit = std::chrono::seconds(30)) const;

private:
    TemporaryFolder folder_;
    int rate_;
    int channels_;
    Process process_;
};

Samples samplesFromFile(const std::string& path);

/// Where a part of a sound begins within another, in samples; nothing when it doesn't occur.
/// difference: how much a sample may differ.
std::optional<std::size_t> findIn(const Samples& whole, const Samples& part, std::size_t from = 0,
                                  int difference = 0);

/// How many samples from two places on are equal.
std::size_t equalLength(const Samples& a, std::size_t atA, const Samples& b, std::size_t atB,
                        int difference = 0);

/// What was found of a sound within a recording.
struct Match {
    std::size_t end = 0;     ///< behind its last sample, in the recording
    std::size_t length = 0;  ///< samples of the sound that are there, one after another
    std::size_t silence = 0; ///< samples of silence that stand between them
};

/// Follows a sound through a recording, from a place in each. On a busy machine the server puts
/// silence between two samples when a client is late; it loses none. gaps: go on behind it.
Match follow(const Samples& recording, std::size_t at, const Samples& sound, std::size_t from,
             bool gaps = true, int difference = 0);

/// The places of the first sound and behind the last, in samples; both the size when all is silent.
std::size_t firstSound(const Samples& samples, std::size_t from = 0);
std::size_t behindLastSound(const Samples& samples);

} // namespace support
