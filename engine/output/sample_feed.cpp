#include "engine/output/sample_feed.h"

#include <algorithm>
#include <cmath>

namespace zvonivec {

namespace {

/// Time from silence to full volume.
constexpr float GAIN_SECONDS = 0.020F;

/// Returns the nearest sample. Compilers vectorise this arithmetic.
std::int16_t scaled(std::int16_t sample, float factor) {
    const float value = static_cast<float>(sample) * factor;
    return static_cast<std::int16_t>(static_cast<int>(value + (value < 0 ? -0.5F : 0.5F)));
}

} // namespace

void SampleFeed::setFormat(int channels, int sampleRate) {
    assert(sampleRate > 0);
    ring_.setChannels(channels);
    stream_.store(0);
    sounding_ = 0;
    sampleRate_ = sampleRate;
    gainStep_ = 1.0F / (GAIN_SECONDS * static_cast<float>(sampleRate));
    deviceFrame_ = 0;
    fadesEnd_ = 0;
    timeline_.reset(ring_.readIndex(), sampleRate);
}

void SampleFeed::beginStream(std::uint64_t stream) {
    streamStart_.store(ring_.writeIndex());
    stream_.store(stream);
}

void SampleFeed::dropOld() {
    const std::uint64_t start = streamStart_.load();
    if (ring_.readIndex() < start) {
        sounding_ = 0;
        ring_.moveTo(start);
        ring_.release(start);
    }
}

void SampleFeed::endDevice() {
    const std::uint64_t heard = timeline_.heardDeviceFrame(Clock::now());
    takeBack(std::min(heard, deviceFrame_));
    sounding_ = 0;
    deviceFrame_ = 0;
    fadesEnd_ = 0;
    timeline_.reset(ring_.readIndex(), sampleRate_);
}

std::size_t SampleFeed::take(std::span<std::int16_t> target) {
    releaseHeard();
    const std::size_t taken = takeSome(target);
    starving_.store(taken < target.size());
    return taken;
}

/// Removes frames that have been heard, and that no lead-in needs any more.
void SampleFeed::releaseHeard() {
    const std::uint64_t heard = std::min(timeline_.heardFrame(Clock::now()), ring_.readIndex());
    ring_.release(heard > FADE_FRAMES ? heard - FADE_FRAMES : 0);
}

std::size_t SampleFeed::takeSome(std::span<std::int16_t> target) {
    const std::uint64_t allowed = allowed_.load();
    const std::uint64_t stream = stream_.load();
    const std::uint64_t start = streamStart_.load();
    const std::size_t channels = ring_.channels();

    std::size_t done = 0; // samples
    if (sounding_ != 0 && sounding_ != allowed) {
        const bool replaced = sounding_ != stream;
        done = fadeOut(target, replaced ? start : ring_.writeIndex());
        sounding_ = 0;
        deviceFrame_ += done / channels;
        fadesEnd_ = deviceFrame_;
        if (done != 0) {
            return done; // what follows comes with the next call
        }
    }
    if (sounding_ == 0) {
        if (ring_.readIndex() < start) {
            ring_.moveTo(start);
            ring_.release(start);
        }
        if (allowed != 0 && allowed == stream && ring_.readIndex() < ring_.writeIndex()) {
            sounding_ = stream;
            fromGain_ = toGain_ = gain_.load();
            rampBegin_ = deviceFrame_;
            const std::size_t led = leadIn(target.subspan(done), start);
            done += led;
            deviceFrame_ += led / channels;
            fadesEnd_ = led != 0 ? deviceFrame_ : fadesEnd_;
        }
    }
    if (sounding_ != 0) {
        const auto rest = target.subspan(done);
        const std::uint64_t index = ring_.readIndex();
        const std::size_t count = ring_.peek(index, rest.data(), rest.size() / channels);
        if (count != 0) {
            ring_.moveTo(index + count);
            timeline_.append(deviceFrame_, index, count);
            const auto samples = rest.first(count * channels);
            applyGain(samples);
            deviceFrame_ += count;
            done += samples.size();
        }
    }
    return done;
}

void SampleFeed::fill(std::span<std::int16_t> target) {
    const auto rest = target.subspan(take(target));
    std::ranges::fill(rest, std::int16_t{0});
    deviceFrame_ += rest.size() / ring_.channels();
}

bool SampleFeed::hasChanged() const {
    return sounding_ != 0 && (sounding_ != allowed_.load() || toGain_ != gain_.load());
}

bool SampleFeed::hasSamples() const {
    const std::uint64_t allowed = allowed_.load();
    if (sounding_ != 0 && sounding_ != allowed) {
        return true;
    }
    const std::uint64_t next = std::max(ring_.readIndex(), streamStart_.load());
    return allowed != 0 && allowed == stream_.load() && next < ring_.writeIndex();
}

std::uint64_t SampleFeed::takeBack(std::uint64_t deviceFrame) {
    const std::uint64_t to = std::max(deviceFrame, fadesEnd_);
    if (to < deviceFrame_) {
        // Frames that a new stream has replaced are gone.
        ring_.moveTo(std::max(timeline_.cut(to, ring_.readIndex()), ring_.releasedIndex()));
        deviceFrame_ = to;
    }
    return deviceFrame_;
}

std::size_t SampleFeed::fadeOut(std::span<std::int16_t> target, std::uint64_t limit) {
    const std::size_t channels = ring_.channels();
    const std::uint64_t index = ring_.readIndex();
    const float gain = gainAt(deviceFrame_);
    const std::size_t wanted = std::min(FADE_FRAMES, target.size() / channels);
    const std::size_t there = ring_.peek(index, target.data(), wanted);
    const std::size_t count =
        static_cast<std::size_t>(std::min<std::uint64_t>(there, limit > index ? limit - index : 0));
    for (std::size_t i = 0; i < count * channels; ++i) {
        const std::size_t frame = i / channels;
        const float left = static_cast<float>(count - frame) / static_cast<float>(count + 1);
        target[i] = scaled(target[i], left * gain);
    }
    return count * channels;
}

/// Fades in the frames of the stream that were taken last.
std::size_t SampleFeed::leadIn(std::span<std::int16_t> target, std::uint64_t start) {
    const std::size_t channels = ring_.channels();
    const std::uint64_t index = ring_.readIndex();
    const std::uint64_t oldest = std::max(start, ring_.releasedIndex());
    const std::size_t count = static_cast<std::size_t>(std::min<std::uint64_t>(
        index - std::min(index, oldest), std::min(FADE_FRAMES, target.size() / channels)));
    ring_.peek(index - count, target.data(), count);
    for (std::size_t i = 0; i < count * channels; ++i) {
        const std::size_t frame = i / channels;
        const float part = static_cast<float>(frame + 1) / static_cast<float>(count + 1);
        target[i] = scaled(target[i], part * toGain_);
    }
    return count * channels;
}

/// The volume at a frame of the device, if nobody changes it before.
float SampleFeed::gainAt(std::uint64_t deviceFrame) const {
    const float frames =
        deviceFrame > rampBegin_ ? static_cast<float>(deviceFrame - rampBegin_) : 0.0F;
    const float way = toGain_ - fromGain_;
    const float gone = std::min(std::abs(way), frames * gainStep_);
    return gone == std::abs(way) ? toGain_ : fromGain_ + std::copysign(gone, way);
}

void SampleFeed::applyGain(std::span<std::int16_t> samples) {
    if (const float wanted = gain_.load(); wanted != toGain_) {
        fromGain_ = gainAt(deviceFrame_);
        toGain_ = wanted;
        rampBegin_ = deviceFrame_;
    }
    const std::size_t channels = ring_.channels();
    std::size_t i = 0;
    for (std::uint64_t frame = deviceFrame_ + 1; i < samples.size(); ++frame) {
        const float gain = gainAt(frame);
        if (gain == toGain_) {
            break;
        }
        for (std::size_t channel = 0; channel < channels; ++channel, ++i) {
            samples[i] = scaled(samples[i], gain);
        }
    }
    if (toGain_ == 1.0F) {
        return;
    }
    const float gain = toGain_; // a local copy can't change under the loop
    for (std::int16_t& sample : samples.subspan(i)) {
        sample = scaled(sample, gain);
    }
}

} // namespace zvonivec
