// Converts samples from one rate to another, for files that change their rate on the way.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zvonivec {

/// For use by one thread. Output sample k is the sound at the time of input sample k * from / to.
/// The numbers are whole, so that no error adds up over time. Before the first input is silence.
class Resampler {
public:
    /// Rates in samples per second, at least 1. firstInput: number of the first input sample.
    Resampler(int from, int to, int channels, std::int64_t firstInput);

    /// Takes the next samples, channels alternating. Returns the outputs that they complete; an
    /// output needs some inputs after its time. Valid until the next call.
    std::span<const std::int16_t> convert(std::span<const std::int16_t> input);

    /// Returns the remaining outputs with numbers below end, as if silence followed the last input.
    /// Valid until the next call.
    std::span<const std::int16_t> finish(std::int64_t end);

    /// Number of the next output.
    [[nodiscard]] std::int64_t nextOutput() const { return nextOutput_; }

private:
    void makeKernels();
    void convertUntil(std::int64_t end);

    std::int64_t up_;   ///< output samples in the time of down_ input samples
    std::int64_t down_; ///< has no common factor with up_
    std::size_t channels_;
    std::int64_t reach_ = 0;     ///< input samples on either side that make an output sample
    std::vector<float> kernels_; ///< 2 * reach_ weights for each of the up_ places between inputs
    std::int64_t nextOutput_;
    std::int64_t firstKept_ = 0; ///< number of the first input in kept_
    std::vector<std::int16_t> kept_;
    std::vector<std::int16_t> output_;
};

} // namespace zvonivec
