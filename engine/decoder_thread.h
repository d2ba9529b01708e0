// The thread that measures and decodes files, feeds the sound device, and reports the end of a
// track and failures.
#pragma once

#include "engine/decoding/mp3_decoder.h"
#include "engine/failure.h"
#include "engine/loaded_file.h"
#include "engine/output/output_thread.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace zvonivec {

/// Commands are given on the user-interface thread, return at once, and are carried out in order.
/// Carrying them out may wait for a disk forever. Only the decoder thread waits then: it shares
/// ownership of this object, so the user-interface thread can abandon both. The device has a thread
/// of its own, so that no file waits for a sound server.
///
/// A run is a stretch of playing that begins with start or restart. Its number identifies it in
/// events.
class DecoderThread : public std::enable_shared_from_this<DecoderThread> {
public:
    struct Events {
        std::function<void(std::uint64_t run)> ended; ///< the natural end of a run
        /// A run can't go on. It is silent by then.
        std::function<void(std::uint64_t run, const Failure& failure)> failed;
        /// More is known of a file: its kind, its tags, its length.
        std::function<void(const std::shared_ptr<LoadedFile>& file)> learnt;
    };

    /// The events are called on the decoder thread, and failed within start and restart when there
    /// is no thread to be had. end must be called before the last reference other than the thread's
    /// is dropped.
    static std::shared_ptr<DecoderThread> create(Events events);
    DecoderThread(const DecoderThread&) = delete;
    DecoderThread& operator=(const DecoderThread&) = delete;
    ~DecoderThread() = default;

    /// Closes the device and ends the thread. No event is called afterwards. A thread that hasn't
    /// ended after the patience ends later by itself, or with the process.
    void end(std::chrono::milliseconds patience);

    /// Sets the file that later commands act on, and reads it; null for none. Stops playing. The
    /// name stands for a title that the file doesn't state. The thread begins with the first file.
    /// Returns False when there is no thread to be had; start and restart try again.
    bool load(std::shared_ptr<LoadedFile> file, std::string name = {});
    /// Plays from a time on, as a new stream of the feed.
    void start(std::uint64_t run, std::uint64_t stream, double seconds);
    /// Plays from the start of the track, in the stream that has just ended, without a gap.
    void restart(std::uint64_t run);
    void pause();
    void resume();
    void stop();

    /// Returns the position in seconds that is heard now in a run; nothing before the run begins.
    [[nodiscard]] std::optional<double> position(std::uint64_t run) const;

    /// The gate and the volume of the feed; they act at once, without a command.
    void allow(std::uint64_t stream) { output_->allow(stream); }
    void setGain(float gain) { output_->setGain(gain); }

private:
    using Clock = std::chrono::steady_clock;

    struct Command {
        enum class Kind { load, start, restart, pause, resume, stop, quit } kind;
        std::shared_ptr<LoadedFile> file = {};
        std::string name = {};
        std::uint64_t run = 0;
        std::uint64_t stream = 0;
        double seconds = 0;
    };

    /// Maps frames of the feed to frames of the track: from feedFrame on they are those from
    /// trackFrame on.
    struct Segment {
        std::uint64_t run = 0;
        std::uint64_t feedFrame = 0;
        std::int64_t trackFrame = 0;
        int sampleRate = 1;
    };

    explicit DecoderThread(Events events) : events_(std::move(events)) {}
    std::optional<Failure> makeThread();
    void sendToPlay(Command command);
    void send(Command command);
    void lookAtOutput();

    // The decoder thread.
    void work();
    void reportEnd();
    [[nodiscard]] std::optional<Clock::time_point> nextWake() const;
    void obey(Command& command);
    void beginRun(const Command& command);
    bool seek();
    bool beginInFeed();
    [[nodiscard]] bool deviceComesFirst() const;
    void studyFile();
    void play();
    void fillFeed();
    [[nodiscard]] std::uint64_t waiting() const;
    [[nodiscard]] std::uint64_t framesIn(std::chrono::milliseconds time) const;
    [[nodiscard]] std::uint64_t framesToHear() const;
    void fail(const Failure& failure);
    void reportFailure(std::uint64_t run, const Failure& failure);
    void reportLearnt();
    void restIfIdle();

    std::mutex eventMutex_;
    Events events_;                        ///< guarded by eventMutex_; empty after end
    std::shared_ptr<OutputThread> output_; ///< set before the thread begins

    std::mutex commandMutex_;
    std::condition_variable commandCame_;
    std::vector<Command> commands_;         ///< guarded by commandMutex_
    std::atomic<bool> commandsWait_{false}; ///< whether commands_ has any
    bool outputChanged_ = false;            ///< guarded by commandMutex_
    bool finished_ = false; ///< the thread is about to end; guarded by commandMutex_
    std::condition_variable finishedCame_;

    mutable std::mutex segmentMutex_;
    Segment segment_; ///< guarded by segmentMutex_

    // Used by the decoder thread alone, except for thread_.
    std::shared_ptr<LoadedFile> file_;
    std::optional<TrackTags> tags_; ///< of file_, once read
    bool studied_ = true;           ///< file_ has been measured and its tags read
    std::unique_ptr<Mp3Decoder> decoder_;
    AudioFormat format_;                 ///< of the feed and the device
    Command began_{Command::Kind::stop}; ///< the start or restart that plays
    std::int64_t firstFrame_ = 0;        ///< of the track, where it starts
    bool begun_ = false;                 ///< began_ can still play
    bool sought_ = false;                ///< the decoder is at firstFrame_
    bool inFeed_ = false;                ///< the feed is ready for its frames
    std::uint64_t run_ = 0;
    std::uint64_t streamStart_ = 0; ///< frame of the feed where the current stream begins
    bool playing_ = false;
    bool decodedAll_ = false;        ///< nothing is left to decode
    std::optional<Failure> failure_; ///< why decoding stopped before the end of the track
    Clock::time_point idleSince_;
    Clock::time_point fillBefore_;   ///< until then a new device comes before measuring
    Clock::time_point endNotBefore_; ///< earliest time of the end of the current run

    std::thread thread_; ///< used by the user-interface thread alone
};

} // namespace zvonivec
