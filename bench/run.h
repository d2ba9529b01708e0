// One run of one player: started, looked at, ended.
#pragma once

#include "bench/subject.h"
#include "tests/support/display.h"
#include "tests/support/pulse_server.h"
#include "tests/support/recording.h"
#include "tests/support/window.h"

#include <chrono>
#include <map>
#include <optional>
#include <set>
#include <string>

namespace bench {

using Clock = std::chrono::steady_clock;

/// What a stretch of time cost, told for a minute of it.
struct Minute {
    double processor = 0;                  ///< seconds
    double server = 0;                     ///< seconds of the display server's
    double wakeUps = 0;                    ///< a second
    std::map<std::string, double> threads; ///< seconds of each
};

/// Rules
///  * Functions that wait return False, or nothing, when what they wait for doesn't come.
///  * Times are good to the two milliseconds between two looks, those of sounds to the ten that the
///    sound server hands on at a time.
class Run {
public:
    Run(const Subject& subject, support::Display& display, support::PulseServer& sound);

    /// Starts it without a file; a program without a window can't.
    void startIdle();
    /// Starts it with a file on its command line, or with the file chosen in its dialog, and waits
    /// for the sound.
    bool startPlaying(const std::string& file);

    /// Seconds from the start of the process until its window was there with something in it.
    std::optional<double> timeToWindow();
    /// Seconds from the command line, or from the confirmation in the dialog, to the first sample.
    [[nodiscard]] std::optional<double> timeToSound() const { return timeToSound_; }
    /// Stops it and plays again: seconds from the click, or the key, to the first sample.
    std::optional<double> timeFromPlayToSound();

    Minute measure(std::chrono::milliseconds time);
    void minimise();

    [[nodiscard]] pid_t pid() const { return process_.pid(); }

private:
    void start(const std::vector<std::string_view>& options, const std::string& file);
    [[nodiscard]] std::optional<support::Window> window() const;
    [[nodiscard]] bool isPainted(const support::Window& window) const;
    bool chooseFile(const std::string& file);
    /// From a moment on; recording is what it is heard in.
    std::optional<double> waitForSound(Clock::time_point from, const support::Recording& recording,
                                       std::size_t after) const;

    const Subject* subject_;
    support::Display* display_;
    support::PulseServer* sound_;
    support::TemporaryFolder folder_;
    Clock::time_point started_;
    support::Process process_;
    std::optional<double> timeToSound_;
};

} // namespace bench
