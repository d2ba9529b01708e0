// The sound device, by SDL's audio subsystem alone.
#pragma once

#include "engine/failure.h"
#include "engine/output/sample_feed.h"

#include <cstdint>
#include <optional>

namespace zvonivec {

/// For use by one thread. SDL is set up when a device is first opened.
class AudioOutput {
public:
    /// The feed must outlive the output. The constructor sets an environment variable that tells
    /// PulseAudio's library how much to hold, so no other thread may read the environment then.
    explicit AudioOutput(SampleFeed& feed);
    AudioOutput(const AudioOutput&) = delete;
    AudioOutput& operator=(const AudioOutput&) = delete;
    ~AudioOutput();

    /// Opens the default device for 16-bit samples and starts taking them from the feed at once.
    /// Only while closed. Returns why there is no device, nothing on success. After a failure the
    /// next call looks for a device anew.
    [[nodiscard]] std::optional<Failure> open(int sampleRate, int channels);

    /// Closes the device; the feed isn't called any more. Samples that the device holds are still
    /// heard.
    void close();

    [[nodiscard]] bool isOpen() const { return device_ != 0; }

    /// Whether the device has gone away since it was opened. It must be closed then.
    [[nodiscard]] bool lost() const;

    /// Shuts SDL's audio down, so that the next open looks for sound servers anew. Only while
    /// closed.
    void reset();

    /// Frames that the device takes at a time.
    [[nodiscard]] int periodFrames() const { return periodFrames_; }
    /// Frames that the device still has to play when it takes the next ones.
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
