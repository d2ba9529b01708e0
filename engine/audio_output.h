// The sound device, by SDL's audio subsystem alone.
#pragma once

#include "engine/sample_feed.h"

#include <chrono>
#include <cstdint>

namespace zvonivec {

/// For one thread. SDL is set up when a device is first opened.
class AudioOutput {
public:
    /// The feed must outlive the output. To be made before there are threads that read the
    /// environment: it tells PulseAudio's library there how much to hold.
    explicit AudioOutput(SampleFeed& feed);
    AudioOutput(const AudioOutput&) = delete;
    AudioOutput& operator=(const AudioOutput&) = delete;
    ~AudioOutput();

    /// Opens the default device for 16-bit samples of this rate and channel count, and starts
    /// taking them from the feed at once. Only while closed. False when there is no device; the
    /// next call then looks for one anew.
    bool open(int sampleRate, int channels);

    /// Closes the device; the feed isn't called any more. What the device holds is still heard.
    void close();

    [[nodiscard]] bool isOpen() const { return device_ != 0; }

    /// Whether the device has gone away since it was opened. It must be closed then.
    [[nodiscard]] bool lost() const;

    /// Forgets what SDL knows of the sound system, to find it anew. Only while closed.
    void reset();

    /// Frames that the device takes at a time.
    [[nodiscard]] int periodFrames() const { return periodFrames_; }
    /// Frames that it still has to play when it takes the next ones.
    [[nodiscard]] int heldFrames() const { return heldFrames_; }

private:
    static void fill(void* feed, std::uint8_t* target, int bytes);

    SampleFeed& feed_;
    std::uint32_t device_ = 0;
    int periodFrames_ = 0;
    int heldFrames_ = 0;
    bool ready_ = false;
};

} // namespace zvonivec
