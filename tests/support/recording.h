// Recordings of a sound server, and the search for known sounds in them.
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

/// 16-bit samples, with the channels interleaved.
using Samples = std::vector<std::int16_t>;

/// Records a server's sink, beginning in the constructor.
class Recording {
public:
    /// prompt: what is heard is recorded within 10 ms. whole: on PipeWire it comes later. Its
    /// cycles are as short as its most impatient client wants them, and short ones get lost on a
    /// machine that takes the processors away for 8 ms.
    enum class Wanted { prompt, whole };

    /// Returns when the recording has begun.
    explicit Recording(const PulseServer& server, Wanted wanted = Wanted::prompt);

    /// Returns the samples recorded so far.
    [[nodiscard]] Samples samples() const;
    /// Returns the number of frames recorded so far. A frame has a sample for each channel.
    [[nodiscard]] std::size_t frames() const;
    /// Waits until this much more time has been recorded.
    void waitFor(std::chrono::milliseconds time) const;
    /// Waits until the end of the recording is silent for this length. Returns false when the time
    /// limit has passed.
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

/// Returns the index at which a part begins within a sound, or nothing when it doesn't occur.
/// Samples may differ by the given difference.
std::optional<std::size_t> findIn(const Samples& whole, const Samples& part, std::size_t from = 0,
                                  int difference = 0);

/// Returns the number of equal samples from two indices on.
std::size_t equalLength(const Samples& a, std::size_t atA, const Samples& b, std::size_t atB,
                        int difference = 0);

/// The part of a sound that was found in a recording.
struct Match {
    std::size_t end = 0;     ///< index behind its last sample in the recording
    std::size_t length = 0;  ///< number of samples found, one after another
    std::size_t silence = 0; ///< number of samples of silence between them
};

/// Follows a sound through a recording, from an index in each. On a busy machine the server inserts
/// silence when a client is late, but it loses no samples. With gaps, the search continues behind
/// such silence.
Match follow(const Samples& recording, std::size_t at, const Samples& sound, std::size_t from,
             bool gaps = true, int difference = 0);

/// Returns the index of the first sample that isn't silent, or the size when all are silent.
std::size_t firstSound(const Samples& samples, std::size_t from = 0);
/// Returns the index behind the last sample that isn't silent, or 0 when all are silent.
std::size_t behindLastSound(const Samples& samples);

} // namespace support
