// The sound device by SDL's audio subsystem alone, for systems without PulseAudio's protocol.
#pragma once

#include "engine/output/audio_output.h"
#include "engine/output/sample_feed.h"

#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace zvonivec {

/// What has been handed to SDL can't be taken back, so it is little. SDL takes samples on a thread
/// of its own.
class SdlOutput final : public AudioOutput {
public:
    /// The feed must outlive the output.
    explicit SdlOutput(SampleFeed& feed) : feed_(feed) {}
    ~SdlOutput() override;

    [[nodiscard]] std::optional<Failure> open(const AudioFormat& format,
                                              const std::function<bool()>& stop) override;
    void serve(const std::function<bool()>& stop) override;
    void close() override;
    void wake() override;
    void setTitle(const std::string& /*title*/) override {} // SDL names streams at their start
    [[nodiscard]] bool callsForMore() const override { return false; }

private:
    static void fill(void* output, std::uint8_t* target, int bytes);

    SampleFeed& feed_;
    std::uint32_t device_ = 0;
    int periodFrames_ = 0; ///< frames that the device takes at a time
    bool ready_ = false;   ///< SDL's audio has been set up

    std::mutex wakeMutex_;
    std::condition_variable woken_;
    bool wake_ = false; ///< guarded by wakeMutex_
};

} // namespace zvonivec
