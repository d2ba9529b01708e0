// Which frame of the feed is heard when: written by the output's thread, read by any thread.
#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace zvonivec {

/// Frames of the device are counted from its opening; silence and fades count too. A piece is a
/// stretch of them that plays consecutive frames of the feed. Readers never wait for the writer
/// for longer than it takes to copy a few numbers, and the writer never waits.
class Timeline {
public:
    using Clock = std::chrono::steady_clock;

    // --- any thread ---

    /// Returns the frame of the feed that is heard at a time.
    [[nodiscard]] std::uint64_t heardFrame(Clock::time_point now) const;

    // --- the output's thread ---

    /// Begins anew: a device whose first frame will be this one of the feed.
    void reset(std::uint64_t feedFrame, int sampleRate);

    /// Adds a piece behind all others.
    void append(std::uint64_t deviceFrame, std::uint64_t feedFrame, std::uint64_t count);

    /// Removes what comes from a frame of the device on. Returns the frame of the feed that was to
    /// be heard there, or that was to be heard next; otherwise when nothing was.
    std::uint64_t cut(std::uint64_t deviceFrame, std::uint64_t otherwise);

    /// Says which frame of the device is heard at a time. It goes on at the sample rate from there
    /// when it runs, but not for longer than a device that works is silent.
    void setClock(std::uint64_t deviceFrame, Clock::time_point when, bool runs);

    /// Says that the device was at work at a time, so that the clock may go on.
    void extendClock(Clock::time_point when);

    /// Returns the frame of the device that is heard at a time.
    [[nodiscard]] std::uint64_t heardDeviceFrame(Clock::time_point now) const;

private:
    struct Piece {
        std::uint64_t deviceFrame = 0;
        std::uint64_t feedFrame = 0;
        std::uint64_t count = 0;
    };
    static constexpr std::size_t MOST_PIECES = 8; ///< the oldest gives way to a ninth

    struct State {
        std::array<Piece, MOST_PIECES> pieces{};
        std::size_t size = 0;
        std::uint64_t heard = 0; ///< frame of the device at the time of when
        Clock::time_point when;
        Clock::time_point lastSign; ///< when the device was last known to work
        bool runs = false;
        int sampleRate = 1;
    };

    [[nodiscard]] static std::uint64_t deviceFrameAt(const State& state, Clock::time_point now);
    [[nodiscard]] State read() const;
    void publish();

    State state_; ///< used by the output's thread alone

    /// Words of a published State. The version is odd while they are written.
    static constexpr std::size_t WORDS = MOST_PIECES * 3 + 6;
    std::atomic<std::uint32_t> version_{0};
    std::array<std::atomic<std::uint64_t>, WORDS> words_{};
};

} // namespace zvonivec
