#include "engine/decoding/resampler.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <numbers>
#include <numeric>

namespace zvonivec {

namespace {

/// Zero crossings of the ideal low-pass on either side of its middle.
constexpr double CROSSINGS = 16;
/// Part of the lower rate's band that passes. The rest is the slope of the low-pass.
constexpr double PASSED = 0.94;

/// Weight of a sample at a distance of x samples of the lower rate: the ideal low-pass, faded out
/// towards the last zero crossing.
double lowPass(double x) {
    if (std::abs(x) >= CROSSINGS) {
        return 0;
    }
    const double angle = std::numbers::pi * x * PASSED;
    const double ideal = angle == 0 ? 1 : std::sin(angle) / angle;
    const double fade = std::cos(std::numbers::pi / 2 * x / CROSSINGS);
    return ideal * fade * fade;
}

} // namespace

Resampler::Resampler(int from, int to, int channels, std::int64_t firstInput)
    : up_(to / std::gcd(from, to)), down_(from / std::gcd(from, to)),
      channels_(static_cast<std::size_t>(channels)),
      nextOutput_((firstInput * up_ + down_ - 1) / down_) {
    assert(from >= 1 && to >= 1 && channels >= 1);
    makeKernels();
    firstKept_ = firstInput - reach_;
    kept_.resize(static_cast<std::size_t>(reach_) * channels_);
}

void Resampler::makeKernels() {
    const double scale = std::min(1.0, static_cast<double>(up_) / static_cast<double>(down_));
    reach_ = static_cast<std::int64_t>(std::ceil(CROSSINGS / scale));
    const auto width = static_cast<std::size_t>(2 * reach_);
    kernels_.resize(static_cast<std::size_t>(up_) * width);
    std::vector<double> weights(width);
    for (std::size_t place = 0; place < static_cast<std::size_t>(up_); ++place) {
        const double middle =
            static_cast<double>(reach_ - 1) + static_cast<double>(place) / static_cast<double>(up_);
        for (std::size_t i = 0; i < width; ++i) {
            weights[i] = lowPass((static_cast<double>(i) - middle) * scale);
        }
        // The weights add up to 1, so that a steady level stays as it is.
        const double sum = std::accumulate(weights.begin(), weights.end(), 0.0);
        std::ranges::transform(weights,
                               kernels_.begin() + static_cast<std::ptrdiff_t>(place * width),
                               [sum](double weight) { return static_cast<float>(weight / sum); });
    }
}

std::span<const std::int16_t> Resampler::convert(std::span<const std::int16_t> input) {
    kept_.insert(kept_.end(), input.begin(), input.end());
    const auto count = static_cast<std::int64_t>(kept_.size() / channels_);
    // Output k needs the inputs up to k * down / up + reach.
    const std::int64_t inputEnd = firstKept_ + count - reach_;
    convertUntil(std::max<std::int64_t>(0, (inputEnd * up_ + down_ - 1) / down_));
    return output_;
}

std::span<const std::int16_t> Resampler::finish(std::int64_t end) {
    const std::int64_t inputEnd = end * down_ / up_ + reach_ + 1;
    const std::int64_t count = std::max<std::int64_t>(0, inputEnd - firstKept_);
    kept_.resize(std::max(kept_.size(), static_cast<std::size_t>(count) * channels_));
    convertUntil(end);
    return output_;
}

void Resampler::convertUntil(std::int64_t end) {
    output_.clear();
    const auto width = static_cast<std::size_t>(2 * reach_);
    for (; nextOutput_ < end; ++nextOutput_) {
        const std::int64_t time = nextOutput_ * down_;
        const float* const kernel = kernels_.data() + static_cast<std::size_t>(time % up_) * width;
        const std::int16_t* const first =
            kept_.data() +
            static_cast<std::size_t>(time / up_ - reach_ + 1 - firstKept_) * channels_;
        for (std::size_t channel = 0; channel < channels_; ++channel) {
            float sum = 0;
            for (std::size_t i = 0; i < width; ++i) {
                sum += kernel[i] * static_cast<float>(first[i * channels_ + channel]);
            }
            output_.push_back(
                static_cast<std::int16_t>(std::lround(std::clamp(sum, -32768.0F, 32767.0F))));
        }
    }
    const std::int64_t needed = nextOutput_ * down_ / up_ - reach_ + 1;
    if (needed > firstKept_) {
        const auto gone =
            std::min(kept_.size() / channels_, static_cast<std::size_t>(needed - firstKept_));
        kept_.erase(kept_.begin(), kept_.begin() + static_cast<std::ptrdiff_t>(gone * channels_));
        firstKept_ += static_cast<std::int64_t>(gone);
    }
}

} // namespace zvonivec
