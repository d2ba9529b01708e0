// The sound device by PulseAudio's protocol, which PipeWire's server speaks too.
#pragma once

#include "engine/output/audio_output.h"
#include "engine/output/sample_feed.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>

struct pa_context;
struct pa_mainloop;
struct pa_stream;
struct pa_time_event;

namespace zvonivec {

/// Keeps seconds of sound in the server, so that this program and the server sleep meanwhile. What
/// a change makes untrue is written once more: the server plays the last sample written for each
/// moment. Every call to the server is asynchronous, so one that hangs holds up nothing.
class PulseOutput final : public AudioOutput {
public:
    /// The feed must outlive the output. callForMore is called on the output's thread.
    PulseOutput(SampleFeed& feed, std::function<void()> callForMore);
    ~PulseOutput() override;

    [[nodiscard]] std::optional<Failure> open(const AudioFormat& format,
                                              const std::function<bool()>& stop) override;
    void serve(const std::function<bool()>& stop) override;
    void close() override;
    void wake() override;
    void setTitle(const std::string& title) override;
    [[nodiscard]] bool callsForMore() const override { return true; }

private:
    struct Timer {
        PulseOutput* output;
        void (PulseOutput::*function)();
        pa_time_event* event = nullptr;
    };

    bool connect(const std::function<bool()>& stop);
    bool createStream(const AudioFormat& format, const std::function<bool()>& stop);
    bool iterateUntil(const std::function<bool()>& done, const std::function<bool()>& stop,
                      std::chrono::milliseconds limit);
    void follow();
    void askForTiming();
    void watchClock();
    void lookAtClockAgain();
    void lookAtClock();
    void takeTiming();
    void nudge();
    void rewrite();
    void supply(std::uint64_t writtenBefore);
    bool write(std::uint64_t writtenBefore);
    void pad();
    [[nodiscard]] bool isPadded() const;
    void noteRoundTrip();
    [[nodiscard]] std::uint64_t lead() const;
    void serverLives();
    void restartTimer(Timer& timer, std::chrono::microseconds time);
    void corkIfSilent();
    void cork(bool on);
    void askSilentServer();
    void applyTitle();
    [[nodiscard]] Failure failure() const;

    SampleFeed& feed_;
    const std::function<void()> callForMore_;
    pa_mainloop* const loop_;
    pa_context* context_ = nullptr;
    pa_stream* stream_ = nullptr;
    Timer corkTimer_{this, &PulseOutput::corkIfSilent};
    Timer clockTimer_{this, &PulseOutput::askSilentServer};
    Timer lookTimer_{this, &PulseOutput::lookAtClockAgain};
    std::chrono::microseconds nextLook_{};
    unsigned requests_ = 0; ///< of the server's, for samples
    AudioFormat format_;
    std::size_t frameBytes_ = 1;
    bool rewinds_ = true;        ///< the server can take back what it has mixed already
    std::uint64_t padBegin_ = 0; ///< the device's frames from here on are silence, up to padEnd_
    std::uint64_t padEnd_ = 0;
    bool corked_ = false;      ///< the stream is, or is about to be
    int nudges_ = 0;           ///< how often the sink may still be asked to begin
    bool timingAsked_ = false; ///< the server owes an answer about its clock
    bool sendsFirst_ = false;  ///< the first part of a change is to be sent before the rest
    SampleFeed::Clock::time_point askedAt_;
    SampleFeed::Clock::duration roundTrip_{}; ///< how long the server takes to answer of late

    std::mutex titleMutex_;
    std::string title_;         ///< guarded by titleMutex_
    bool titleChanged_ = false; ///< guarded by titleMutex_
};

} // namespace zvonivec
