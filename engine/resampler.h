// Converts samples of one rate to another: for files that change their rate on the way.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zvonivec {

/// For one thread. Output sample k is the input's sound at the time of input sample k * from / to,
/// exactly and without an end, however many there are; what lies before the first input is silence.
class Resampler {
public:
    /// Rates in samples per second, at least 1. The first input will be the one of that number.
    Resampler(int from, int to, int channels, std::int64_t firstInput);

    /// Takes the next samples, channels alternating, and gives what can be told by now, which is
    /// some samples behind. Valid until the next call.
    std::span<const std::int16_t> convert(std::span<const std::int16_t> input);

    /// Gives the rest, up to an output of this number: silence follows the last input.
    std::span<const std::int16_t> finish(std::int64_t behindLast);

    /// Number of the output that comes next.
    [[nodiscard]] std::int64_t nextOutput() const { return nextOutput_; }

private:
    void makeKernels();
    void convertUntil(std::int64_t behindLast);

    std::int64_t up_;   ///< output samples in the time of down_ input samples
    std::int64_t down_; ///< both without a common factor
    std::size_t channels_;
    std::int64_t reach_ = 0;     ///< input samples that count on either side of an output sample
    std::vector<float> kernels_; ///< 2 * reach_ weights for each of the up_ places between inputs
    std::int64_t nextOutput_;
    std::int64_t firstKept_ = 0; ///< number of the first input in kept_
    std::vector<std::int16_t> kept_;
    std::vector<std::int16_t> output_;
};

} // namespace zvonivec
