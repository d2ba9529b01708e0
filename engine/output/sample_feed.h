// Connects the decoder thread with the sound device: a ring of decoded samples, the volume, and a
// gate that lets sound out or keeps it in. The output takes only samples that are there, without
// locks, memory allocation or system calls.
#pragma once

#include "engine/output/ring.h"
#include "engine/output/timeline.h"

#include <atomic>
#include <cassert>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>

namespace zvonivec {

/// Samples belong to streams: a stream is an unbroken sequence of frames. Streams are numbered from
/// 1 on; a seek or another file begins a new stream. The gate lets one stream sound.
///
/// Silencing a stream in the middle makes no click. The next few milliseconds are faded out, but
/// stay in the ring. When the stream sounds again, the last few milliseconds before them are faded
/// in, and then they are played in full. Apart from the two fades no frame is lost or repeated.
///
/// Frames stay in the ring until they have been heard. An output that can take back what it has
/// handed to the device does so where the gate or the volume changes: takeBack moves the feed to
/// an earlier moment, and the output takes anew from there.
class SampleFeed {
public:
    using Clock = Timeline::Clock;

    /// Frames of each of the two fades.
    static constexpr std::size_t FADE_FRAMES = 128;

    explicit SampleFeed(std::size_t capacity) : ring_(capacity) {}

    // --- any thread ---

    /// Lets a stream sound as soon as it has begun, and silences every other; 0 silences all.
    void allow(std::uint64_t stream) { allowed_.store(stream); }

    /// Moves the volume to a factor of 0 to 1, within a few milliseconds.
    void setGain(float gain) {
        assert(gain >= 0 && gain <= 1);
        gain_.store(gain);
    }

    /// Number of the frame that is heard at a time.
    [[nodiscard]] std::uint64_t heardFrame(Clock::time_point now) const {
        return timeline_.heardFrame(now);
    }

    /// Whether the output has asked for more than there was.
    [[nodiscard]] bool isStarving() const { return starving_.load(); }

    // --- decoder thread ---

    /// Changes the format of frames and ends all streams. Only while no output takes.
    void setFormat(int channels, int sampleRate);

    /// Says whether the last frame written is the last there is.
    void setComplete(bool complete) { complete_.store(complete); }

    /// Begins a stream with the next frame written. Frames of the old stream are dropped when the
    /// output takes next.
    void beginStream(std::uint64_t stream);

    /// Drops the frames of the old stream at once. Only while no output takes.
    void dropOld();

    /// Number of the frame that is written next.
    [[nodiscard]] std::uint64_t writeIndex() const { return ring_.writeIndex(); }
    /// Number of the frame that is taken next.
    [[nodiscard]] std::uint64_t readIndex() const { return ring_.readIndex(); }
    /// Returns how many frames fit in now.
    [[nodiscard]] std::size_t space() const { return ring_.space(); }
    /// Appends frames, channels alternating, which must fit in.
    void write(std::span<const std::int16_t> samples) { ring_.write(samples); }

    // --- the output's thread ---

    /// Ends a device, which takes no more. Frames that it was given and hasn't played come again.
    void endDevice();

    /// Takes the next samples for the device, as many as there are now. Returns their number.
    std::size_t take(std::span<std::int16_t> target);

    /// Says that the device wants no more for now.
    void setSatisfied() { starving_.store(false); }

    /// As take, with silence where there is nothing to play.
    void fill(std::span<std::int16_t> target);

    /// Number of the device's frame that is taken next, counted from its opening.
    [[nodiscard]] std::uint64_t deviceFrame() const { return deviceFrame_; }

    /// Whether frames that have been taken would be others now.
    [[nodiscard]] bool hasChanged() const;

    /// Number of the device's frame that is heard now.
    [[nodiscard]] std::uint64_t heardDeviceFrame() const {
        return timeline_.heardDeviceFrame(Clock::now());
    }

    /// Whether take would return samples now.
    [[nodiscard]] bool hasSamples() const;

    /// Whether the device will play silence after what has been taken, for all that is known.
    [[nodiscard]] bool isAtEnd() const { return !hasSamples() && (isSilent() || complete_.load()); }

    /// Whether nothing sounds since the last fade.
    [[nodiscard]] bool isSilent() const { return sounding_ == 0; }

    /// Goes back to a frame of the device, so that the frames from there on are taken anew. Never
    /// goes back into a fade. Returns the frame of the device that is taken next.
    std::uint64_t takeBack(std::uint64_t deviceFrame);

    /// Says which frame of the device is heard at a time, and whether the device runs.
    void setClock(std::uint64_t deviceFrame, Clock::time_point when, bool runs) {
        timeline_.setClock(deviceFrame, when, runs);
    }

    /// Says that the device was at work at a time.
    void extendClock(Clock::time_point when) { timeline_.extendClock(when); }

private:
    std::size_t takeSome(std::span<std::int16_t> target);
    void releaseHeard();
    std::size_t fadeOut(std::span<std::int16_t> target, std::uint64_t limit);
    std::size_t leadIn(std::span<std::int16_t> target, std::uint64_t start);
    void applyGain(std::span<std::int16_t> samples);
    [[nodiscard]] float gainAt(std::uint64_t deviceFrame) const;

    FrameRing ring_;
    Timeline timeline_;
    std::atomic<std::uint64_t> allowed_{0};
    std::atomic<float> gain_{1.0F};
    std::atomic<bool> starving_{false};
    std::atomic<bool> complete_{false};

    // The stream being written: its start is stored before its number.
    std::atomic<std::uint64_t> streamStart_{0};
    std::atomic<std::uint64_t> stream_{0};

    // Used by the output's thread alone; setFormat resets them while no output takes.
    std::uint64_t sounding_ = 0; ///< stream that sounds now, 0: none
    std::uint64_t deviceFrame_ = 0;
    std::uint64_t fadesEnd_ = 0; ///< the device's frame behind the last fade
    int sampleRate_ = 1;
    float gainStep_ = 0.001F; ///< largest change of the volume from frame to frame

    // The volume moves from fromGain_ at the device's frame rampBegin_ to toGain_.
    float fromGain_ = 1.0F;
    float toGain_ = 1.0F;
    std::uint64_t rampBegin_ = 0;
};

} // namespace zvonivec
