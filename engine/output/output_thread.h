// The thread that opens, serves and closes the sound device, and the feed that it plays.
#pragma once

#include "engine/failure.h"
#include "engine/output/audio_output.h"
#include "engine/output/sample_feed.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace zvonivec {

/// Opening and closing a device may take long, or forever when a sound server hangs. Only this
/// thread waits then: it shares ownership of the object, so that everyone else can abandon both.
class OutputThread : public std::enable_shared_from_this<OutputThread> {
public:
    enum class State {
        closed,
        opening,
        open,
        closing,
        failed, ///< there is no device
        lost,   ///< the device went away
    };

    /// changed is called when the state changes, and when the device has taken frames: on the
    /// output's thread, or in open. end must be called before the last reference other than the
    /// thread's is dropped.
    static std::shared_ptr<OutputThread> create(std::size_t capacity,
                                                std::function<void()> changed);
    OutputThread(const OutputThread&) = delete;
    OutputThread& operator=(const OutputThread&) = delete;
    ~OutputThread() = default;

    // --- any thread ---

    /// The gate and the volume of the feed, heard at once.
    void allow(std::uint64_t stream);
    void setGain(float gain);
    /// Tells the sound system what plays.
    void setTitle(const std::string& title);

    /// Begins to close the device; end waits until then or the deadline. A thread that hasn't ended
    /// by then ends later by itself, or with the process.
    void quit();
    void end(std::chrono::steady_clock::time_point deadline);

    // --- decoder thread ---

    [[nodiscard]] SampleFeed& feed() { return feed_; }
    [[nodiscard]] const SampleFeed& feed() const { return feed_; }

    /// Begins to open the device. Only while closed. The thread begins with the first device; when
    /// there is no thread to be had, the state is failed.
    void open(const AudioFormat& format);
    /// Begins to close the device. The state is closed at once when it was failed or lost.
    void close();
    [[nodiscard]] State state() const;
    /// Why the state is failed.
    [[nodiscard]] Failure failure() const;

    /// Says that the feed has got frames.
    void supply();
    /// Whether changed is called when the device has taken frames.
    [[nodiscard]] bool callsForMore() const;

private:
    OutputThread(std::size_t capacity, std::function<void()> changed)
        : feed_(capacity), changed_(std::move(changed)) {}

    void work();
    [[nodiscard]] bool mustStop() const;
    void setState(State state);
    void wakeOutput() const;
    void run(const AudioFormat& format);
    bool tryOutput(AudioOutput& output, const AudioFormat& format);
    void setOutput(AudioOutput* output);

    SampleFeed feed_;
    const std::function<void()> changed_;

    mutable std::mutex mutex_;
    std::condition_variable came_;
    State state_ = State::closed;       ///< guarded by mutex_, as all below
    std::optional<AudioFormat> wanted_; ///< to be opened
    bool stop_ = false;                 ///< what is open, or being opened, is to be closed
    bool quit_ = false;
    bool finished_ = false;
    AudioOutput* output_ = nullptr; ///< the one at work
    Failure failure_;
    std::string title_;

    std::thread thread_; ///< changed while quit_ is False, and by end
};

} // namespace zvonivec
