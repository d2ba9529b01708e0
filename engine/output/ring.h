// A lock-free queue of audio frames (one sample per channel each) between one writing and one
// reading thread. Frame numbers never start again, so that each frame has a number of its own.
// Frames that have been read stay until the reader releases them, so that it can read them again.
#pragma once

#include <algorithm>
#include <atomic>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zvonivec {

class FrameRing {
public:
    /// capacity in frames.
    explicit FrameRing(std::size_t capacity) : capacity_(capacity), samples_(capacity * 2) {}

    /// Sets the samples in a frame, 1 or 2, and empties the ring. Only while neither thread uses
    /// it.
    void setChannels(int channels) {
        assert(channels == 1 || channels == 2);
        channels_ = static_cast<std::size_t>(channels);
        readIndex_.store(writeIndex_.load());
        releasedIndex_.store(writeIndex_.load());
    }
    [[nodiscard]] std::size_t channels() const { return channels_; }

    /// Number of the frame that is written next; all before it can be read.
    [[nodiscard]] std::uint64_t writeIndex() const {
        return writeIndex_.load(std::memory_order_acquire);
    }
    /// Number of the frame that is read next.
    [[nodiscard]] std::uint64_t readIndex() const {
        return readIndex_.load(std::memory_order_acquire);
    }

    /// Number of the oldest frame that can still be read.
    [[nodiscard]] std::uint64_t releasedIndex() const {
        return releasedIndex_.load(std::memory_order_acquire);
    }

    /// Writer: returns how many frames fit in now.
    [[nodiscard]] std::size_t space() const {
        return capacity_ - static_cast<std::size_t>(writeIndex() - releasedIndex());
    }

    /// Writer: appends frames, which must fit in.
    void write(std::span<const std::int16_t> samples) {
        const std::uint64_t index = writeIndex_.load(std::memory_order_relaxed);
        const std::size_t count = samples.size() / channels_;
        assert(samples.size() % channels_ == 0 && count <= space());
        const auto start = static_cast<std::size_t>(index % capacity_);
        const std::size_t first = std::min(count, capacity_ - start) * channels_;
        std::copy_n(samples.begin(), first, at(start));
        std::copy(samples.begin() + static_cast<std::ptrdiff_t>(first), samples.end(), at(0));
        writeIndex_.store(index + count, std::memory_order_release);
    }

    /// Reader: copies up to so many frames from a number on, and keeps them in the ring. Returns
    /// how many were there.
    std::size_t peek(std::uint64_t index, std::int16_t* target, std::size_t wanted) const {
        const std::uint64_t end = writeIndex();
        const std::size_t count =
            index < end ? static_cast<std::size_t>(std::min<std::uint64_t>(wanted, end - index))
                        : 0;
        const auto start = static_cast<std::size_t>(index % capacity_);
        const std::size_t first = std::min(count, capacity_ - start);
        std::copy_n(at(start), first * channels_, target);
        std::copy_n(at(0), (count - first) * channels_, target + first * channels_);
        return count;
    }

    /// Reader: goes on reading at a frame that hasn't been released, further on or back.
    void moveTo(std::uint64_t index) {
        assert(index >= releasedIndex() && index <= writeIndex());
        readIndex_.store(index, std::memory_order_release);
    }

    /// Reader: removes all frames before a number, which must not exceed that of the next frame.
    void release(std::uint64_t index) {
        assert(index <= readIndex());
        if (index > releasedIndex()) {
            releasedIndex_.store(index, std::memory_order_release);
        }
    }

private:
    [[nodiscard]] std::int16_t* at(std::size_t frame) {
        return samples_.data() + frame * channels_;
    }
    [[nodiscard]] const std::int16_t* at(std::size_t frame) const {
        return samples_.data() + frame * channels_;
    }

    const std::size_t capacity_;
    std::size_t channels_ = 2;
    std::vector<std::int16_t> samples_;
    std::atomic<std::uint64_t> writeIndex_{0};
    std::atomic<std::uint64_t> readIndex_{0};
    std::atomic<std::uint64_t> releasedIndex_{0};
};

} // namespace zvonivec
