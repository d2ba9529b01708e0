// A way to the sound device, as the output's thread sees it.
#pragma once

#include "engine/failure.h"

#include <functional>
#include <optional>
#include <string>

namespace zvonivec {

struct AudioFormat {
    int sampleRate = 0;
    int channels = 0;
    bool operator==(const AudioFormat&) const = default;
};

/// Takes samples of 16 bits from a feed and hands them to the default device. All functions except
/// wake are called on the output's thread, and the feed is used on that thread or, by a library
/// with a thread of its own, between open and close.
///
/// Taking samples never waits. A change of the feed's gate or volume doesn't wait for what has been
/// handed to the device: it is taken back, or it is little. docs/engine.md has the times.
class AudioOutput {
public:
    AudioOutput() = default;
    AudioOutput(const AudioOutput&) = delete;
    AudioOutput& operator=(const AudioOutput&) = delete;
    virtual ~AudioOutput() = default;

    /// Opens the device. May wait for the sound system, but not after stop has become True. Returns
    /// why there is no device, nothing on success.
    [[nodiscard]] virtual std::optional<Failure> open(const AudioFormat& format,
                                                      const std::function<bool()>& stop) = 0;

    /// Keeps the device supplied until stop, which is asked after each wake. Returns early when the
    /// device has been lost.
    virtual void serve(const std::function<bool()>& stop) = 0;

    /// Closes the device. The feed isn't used any more.
    virtual void close() = 0;

    /// Any thread: makes open ask stop, and makes serve look at the feed and at stop.
    virtual void wake() = 0;

    /// Tells the sound system what plays, for mixers.
    virtual void setTitle(const std::string& title) = 0;

    /// Whether it calls for more samples when it has taken some. The decoder thread looks by itself
    /// otherwise.
    [[nodiscard]] virtual bool callsForMore() const = 0;
};

} // namespace zvonivec
