// The thread that measures and decodes files, feeds the sound device, and notices the end of a
// track and what goes wrong.
#pragma once

#include "engine/audio_output.h"
#include "engine/loaded_file.h"
#include "engine/mp3_decoder.h"
#include "engine/sample_feed.h"

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

/// All commands are for the user-interface thread; they are carried out in order and never wait.
/// What they lead to may wait for a disk or a sound server without an end, which holds up nobody
/// but this thread: it shares the object, so that the user-interface thread can leave both behind.
///
/// A run is a stretch of playing that begins with start or restart; its number names it in events.
class DecoderThread {
public:
    struct Events {
        std::function<void(std::uint64_t run)> ended;  ///< the natural end of a run
        std::function<void(std::uint64_t run)> failed; ///< a run can't go on; it is silent
    };

    /// The events are called on the decoder thread. end must be called before the last owner but
    /// the thread goes.
    static std::shared_ptr<DecoderThread> create(Events events);
    DecoderThread(const DecoderThread&) = delete;
    DecoderThread& operator=(const DecoderThread&) = delete;
    ~DecoderThread() = default;

    /// Closes the device and ends the thread. No event is called any more. A thread that hasn't
    /// ended after half a second ends later by itself, or with the process.
    void end();

    /// Makes a file, or none, the one that the other commands are about. Nothing plays any more.
    void load(std::shared_ptr<LoadedFile> file);
    /// Plays from a time on, as a new stream of the feed.
    void start(std::uint64_t run, std::uint64_t stream, double seconds);
    /// Plays from the start, in the stream that has just come to its end, without a gap.
    void restart(std::uint64_t run);
    void pause();
    void resume();
    void stop();

    /// Seconds of the track that are heard now in a run, nothing when it hasn't been begun yet.
    [[nodiscard]] std::optional<double> position(std::uint64_t run) const;

    /// The gate and the volume, which act at once.
    [[nodiscard]] SampleFeed& feed() { return feed_; }

private:
    using Clock = std::chrono::steady_clock;

    struct Command {
        enum class Kind { load, start, restart, pause, resume, stop, quit } kind;
        std::shared_ptr<LoadedFile> file = {};
        std::uint64_t run = 0;
        std::uint64_t stream = 0;
        double seconds = 0;
    };

    /// Which frame of the track a frame of the feed is.
    struct Segment {
        std::uint64_t run = 0;
        std::uint64_t feedFrame = 0;
        std::int64_t trackFrame = 0;
        int sampleRate = 1;
    };

    explicit DecoderThread(Events events);
    void send(Command command);

    // The decoder thread.
    void work();
    void callEvent(std::function<void(std::uint64_t)> Events::*event);
    [[nodiscard]] std::optional<Clock::time_point> nextWake() const;
    void obey(Command& command);
    void begin(const Command& command);
    void studyFile();
    void play();
    void fillFeed();
    [[nodiscard]] std::uint64_t waiting() const;
    [[nodiscard]] std::uint64_t endLead() const;
    void fail();
    void dropOutput();
    void restIfIdle();

    std::mutex eventMutex_;
    Events events_; ///< guarded by eventMutex_; empty once nobody listens any more
    SampleFeed feed_;

    std::mutex commandMutex_;
    std::condition_variable commandCame_;
    std::vector<Command> commands_;         ///< guarded by commandMutex_
    std::atomic<bool> commandsWait_{false}; ///< whether commands_ has any
    bool finished_ = false;                 ///< the thread's work is done; guarded by commandMutex_
    std::condition_variable finishedCame_;

    mutable std::mutex segmentMutex_;
    Segment segment_; ///< guarded by segmentMutex_
    std::atomic<int> latencyFrames_{0};

    // The rest is the decoder thread's alone.
    AudioOutput output_;
    std::shared_ptr<LoadedFile> file_;
    std::optional<TrackTags> tags_; ///< of file_, once read
    bool studied_ = true;           ///< nothing is left to find out of file_
    std::unique_ptr<Mp3Decoder> decoder_;
    int channels_ = 0; ///< format of feed_ and output_
    int sampleRate_ = 0;
    std::uint64_t run_ = 0;
    std::uint64_t streamStart_ = 0; ///< frame of the feed where the present stream begins
    bool playing_ = false;
    bool decodedAll_ = false; ///< the feed has the end of what can be played
    bool broken_ = false;     ///< that end is not the track's
    Clock::time_point idleSince_;

    std::thread thread_; ///< the user-interface thread's
};

} // namespace zvonivec
