// Connects the decoder thread with the sound device: a ring of decoded samples, the volume, and a
// gate that lets sound out or keeps it in. The device's callback takes only samples that are there,
// without locks, memory allocation or system calls.
#pragma once

#include "engine/output/ring.h"

#include <array>
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
class SampleFeed {
public:
    using Clock = std::chrono::steady_clock;

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

    /// The last time the callback took frames.
    struct Taken {
        std::uint64_t end = 0; ///< number of the last frame taken, plus 1
        std::size_t count = 0;
        Clock::time_point when;
    };
    [[nodiscard]] Taken taken() const;

    // --- decoder thread ---

    /// Changes the format of frames and ends all streams. Only while no device calls fill.
    void setFormat(int channels, int sampleRate);

    /// Begins a stream with the next frame written. Frames of the old stream are dropped by the
    /// next fill.
    void beginStream(std::uint64_t stream);

    /// Drops the frames of the old stream at once. Only while no device calls fill.
    void dropOld();

    /// Number of the frame that is written next.
    [[nodiscard]] std::uint64_t writeIndex() const { return ring_.writeIndex(); }
    [[nodiscard]] std::uint64_t readIndex() const { return ring_.readIndex(); }
    /// Returns how many frames fit in now.
    [[nodiscard]] std::size_t space() const { return ring_.space(); }
    /// Appends frames, channels alternating, which must fit in.
    void write(std::span<const std::int16_t> samples) { ring_.write(samples); }

    // --- the device's callback ---

    /// Fills a buffer of the device, with silence where there is nothing to play.
    void fill(std::span<std::int16_t> target);

private:
    std::size_t fadeOut(std::span<std::int16_t> target, std::uint64_t limit);
    std::size_t leadIn(std::span<std::int16_t> target);
    void remember(std::span<const std::int16_t> samples);
    void applyGain(std::span<std::int16_t> samples);
    void publishTaken(std::uint64_t end, std::size_t count);

    FrameRing ring_;
    std::atomic<std::uint64_t> allowed_{0};
    std::atomic<float> gain_{1.0F};

    // The stream being written: its start is stored before its number.
    std::atomic<std::uint64_t> streamStart_{0};
    std::atomic<std::uint64_t> stream_{0};

    // The fields of Taken. The version is odd while the callback writes them.
    std::atomic<std::uint32_t> takenVersion_{0};
    std::atomic<std::uint64_t> takenEnd_{0};
    std::atomic<std::uint64_t> takenCount_{0};
    std::atomic<Clock::rep> takenWhen_{0};

    // Used by the callback alone; setFormat resets them while the callback doesn't run.
    std::uint64_t sounding_ = 0;   ///< stream that sounds now, 0: none
    std::uint64_t remembered_ = 0; ///< stream of the frames in memory_
    std::size_t memoryFrames_ = 0;
    std::array<std::int16_t, FADE_FRAMES * 2> memory_{}; ///< the last frames taken
    float currentGain_ = 1.0F;
    float gainStep_ = 0.001F; ///< largest change of currentGain_ from frame to frame
};

} // namespace zvonivec
