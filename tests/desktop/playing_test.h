// A player that plays a file.
#pragma once

#include "tests/desktop/desktop_test.h"
#include "tests/support/mp3_samples.h"
#include "tests/support/recording.h"

namespace support {

/// The fixture of tests that need a playing file. Its volume is 100, so that what is heard is what
/// the file holds, and what is heard is recorded from the start.
class PlayingTest : public DesktopTest {
protected:
    explicit PlayingTest(const DisplayOptions& options = {}) : DesktopTest(options) {}

    static constexpr int RATE = 44100;

    /// Makes a file of noise at a path; its samples as decoded by another program.
    [[nodiscard]] Samples makeFile(const std::string& path, double seconds) const;
    /// Turns the volume up by clicks on the loudspeaker.
    void turnUp();
    /// makeFile, turnUp, opens the file and waits until it plays.
    void playFile(double seconds);

    /// Waits until something sounds, from now on.
    [[nodiscard]] bool waitForSound() const;
    /// The place in the file that is heard next, in seconds; nothing when nothing of it is heard.
    [[nodiscard]] std::optional<double> heardPlace() const;

    std::string file_;
    Samples samples_;
    std::unique_ptr<Recording> recording_;
};

} // namespace support
