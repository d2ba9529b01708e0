#include "engine/output/sample_feed.h"

#include <algorithm>
#include <cmath>

namespace zvonivec {

namespace {

/// Time from silence to full volume.
constexpr float GAIN_SECONDS = 0.020F;

/// Rounds to the nearest step. std::lround would keep compilers from using vector instructions.
std::int16_t scaled(std::int16_t sample, float factor) {
    const float value = static_cast<float>(sample) * factor;
    return static_cast<std::int16_t>(static_cast<int>(value + (value < 0 ? -0.5F : 0.5F)));
}

} // namespace

SampleFeed::Taken SampleFeed::taken() const {
    for (;;) {
        const std::uint32_t before = takenVersion_.load();
        Taken result;
        result.end = takenEnd_.load();
        result.count = static_cast<std::size_t>(takenCount_.load());
        result.when = Clock::time_point(Clock::duration(takenWhen_.load()));
        if (before % 2 == 0 && takenVersion_.load() == before) {
            return result;
        }
    }
}

void SampleFeed::publishTaken(std::uint64_t end, std::size_t count) {
    takenVersion_.fetch_add(1);
    takenEnd_.store(end);
    takenCount_.store(count);
    // Reads the clock without a system call.
    takenWhen_.store(Clock::now().time_since_epoch().count());
    takenVersion_.fetch_add(1);
}

void SampleFeed::setFormat(int channels, int sampleRate) {
    ring_.setChannels(channels);
    stream_.store(0);
    sounding_ = 0;
    remembered_ = 0;
    memoryFrames_ = 0;
    gainStep_ = 1.0F / (GAIN_SECONDS * static_cast<float>(sampleRate));
}

void SampleFeed::beginStream(std::uint64_t stream) {
    streamStart_.store(ring_.writeIndex());
    stream_.store(stream);
}

void SampleFeed::dropOld() {
    sounding_ = 0;
    ring_.release(std::max(ring_.readIndex(), streamStart_.load()));
}

void SampleFeed::fill(std::span<std::int16_t> target) {
    const std::uint64_t allowed = allowed_.load();
    const std::uint64_t stream = stream_.load();
    const std::uint64_t start = streamStart_.load();

    std::size_t done = 0; // samples
    if (sounding_ != 0 && sounding_ != allowed) {
        const bool replaced = sounding_ != stream;
        done = fadeOut(target, replaced ? start : ring_.writeIndex());
        sounding_ = 0;
    } else {
        if (sounding_ == 0) {
            ring_.release(std::max(ring_.readIndex(), start));
            if (allowed != 0 && allowed == stream) {
                sounding_ = stream;
                currentGain_ = gain_.load();
                done = leadIn(target);
            }
        }
        if (sounding_ != 0) {
            const auto rest = target.subspan(done);
            const std::uint64_t index = ring_.readIndex();
            const std::size_t count =
                ring_.peek(index, rest.data(), rest.size() / ring_.channels());
            if (count != 0) {
                ring_.release(index + count);
                publishTaken(index + count, count);
                const auto samples = rest.first(count * ring_.channels());
                remember(samples);
                applyGain(samples);
                done += samples.size();
            }
        }
    }
    std::ranges::fill(target.subspan(done), std::int16_t{0});
}

std::size_t SampleFeed::fadeOut(std::span<std::int16_t> target, std::uint64_t limit) {
    const std::size_t channels = ring_.channels();
    const std::uint64_t index = ring_.readIndex();
    const std::size_t wanted = std::min(FADE_FRAMES, target.size() / channels);
    const std::size_t there = ring_.peek(index, target.data(), wanted);
    const std::size_t count =
        static_cast<std::size_t>(std::min<std::uint64_t>(there, limit > index ? limit - index : 0));
    for (std::size_t i = 0; i < count * channels; ++i) {
        const std::size_t frame = i / channels;
        const float left = static_cast<float>(count - frame) / static_cast<float>(count + 1);
        target[i] = scaled(target[i], left * currentGain_);
    }
    return count * channels;
}

std::size_t SampleFeed::leadIn(std::span<std::int16_t> target) {
    const std::size_t channels = ring_.channels();
    if (remembered_ != sounding_) {
        remembered_ = sounding_;
        memoryFrames_ = 0;
    }
    const std::size_t count = std::min(memoryFrames_, target.size() / channels);
    const std::size_t skipped = (memoryFrames_ - count) * channels;
    for (std::size_t i = 0; i < count * channels; ++i) {
        const std::size_t frame = i / channels;
        const float part = static_cast<float>(frame + 1) / static_cast<float>(count + 1);
        target[i] = scaled(memory_[skipped + i], part * currentGain_);
    }
    return count * channels;
}

void SampleFeed::remember(std::span<const std::int16_t> samples) {
    const std::size_t channels = ring_.channels();
    const std::size_t count = std::min(samples.size() / channels, FADE_FRAMES);
    const std::size_t kept = std::min(memoryFrames_, FADE_FRAMES - count);
    const auto old =
        memory_.begin() + static_cast<std::ptrdiff_t>((memoryFrames_ - kept) * channels);
    std::copy_n(old, kept * channels, memory_.begin());
    const auto last = samples.last(count * channels);
    std::copy(last.begin(), last.end(),
              memory_.begin() + static_cast<std::ptrdiff_t>(kept * channels));
    memoryFrames_ = kept + count;
}

void SampleFeed::applyGain(std::span<std::int16_t> samples) {
    const float wanted = gain_.load();
    const std::size_t channels = ring_.channels();
    std::size_t i = 0;
    while (currentGain_ != wanted && i < samples.size()) {
        const float step = std::clamp(wanted - currentGain_, -gainStep_, gainStep_);
        currentGain_ = std::abs(wanted - currentGain_) <= gainStep_ ? wanted : currentGain_ + step;
        for (std::size_t channel = 0; channel < channels; ++channel, ++i) {
            samples[i] = scaled(samples[i], currentGain_);
        }
    }
    if (currentGain_ == 1.0F) {
        return;
    }
    const float gain = currentGain_; // a local copy can't change under the loop
    for (std::int16_t& sample : samples.subspan(i)) {
        sample = scaled(sample, gain);
    }
}

} // namespace zvonivec
