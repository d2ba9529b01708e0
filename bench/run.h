// One run of one player: start, measurements, end.
#pragma once

#include "bench/subject.h"
#include "tests/support/display.h"
#include "tests/support/message_bus.h"
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

/// The cost of a stretch of time, scaled to a minute.
struct Minute {
    double processor = 0;                  ///< seconds
    double server = 0;                     ///< seconds of the display server
    double wakeUps = 0;                    ///< per second
    std::optional<double> energy;          ///< joules of the processor, all programs together
    std::map<std::string, double> threads; ///< seconds of each
};

/// Rules
///  * Functions that wait return False, or nothing, when their time has run out.
///  * Times are exact to two milliseconds, the interval of polling. Times of sounds are exact to
///  the
///    ten milliseconds that the sound server passes on at once.
class Run {
public:
    Run(const Subject& subject, support::Display& display, support::PulseServer& sound);

    /// Starts the player without a file. Needs a player with a window.
    void startIdle();
    /// Starts the player with a file, on the command line or through its dialog, and waits for
    /// the sound.
    bool startPlaying(const std::string& file);

    /// Returns the seconds from the start of the process until its window was painted.
    std::optional<double> timeToWindow();
    /// Returns the seconds from the command line, or from the confirmation in the dialog, to the
    /// first sample.
    [[nodiscard]] std::optional<double> timeToSound() const { return timeToSound_; }
    /// Stops and plays again. Returns the seconds from the click, or the key, to the first sample.
    std::optional<double> timeFromPlayToSound();
    /// Returns the seconds from the click, or the key, that stopped it to the last sample.
    [[nodiscard]] std::optional<double> timeFromStopToSilence() const { return timeToSilence_; }

    Minute measure(std::chrono::milliseconds time);
    void minimise();

    [[nodiscard]] pid_t pid() const { return process_.pid(); }

private:
    void start(const std::vector<std::string_view>& options, const std::string& file);
    [[nodiscard]] std::optional<support::Window> window() const;
    [[nodiscard]] bool isPainted(const support::Window& window) const;
    bool chooseFile(const std::string& file);
    /// Waits for a sound in the recording after some of its samples. Returns the seconds since a
    /// moment.
    [[nodiscard]] std::optional<double> waitForSound(Clock::time_point from,
                                                     const support::Recording& recording,
                                                     std::size_t after) const;

    const Subject* subject_;
    support::Display* display_;
    support::PulseServer* sound_;
    support::TemporaryFolder folder_;
    std::optional<support::MessageBus> bus_;
    Clock::time_point started_;
    support::Process process_;
    std::optional<double> timeToSound_;
    std::optional<double> timeToSilence_;
};

} // namespace bench
