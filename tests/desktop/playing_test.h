// A player that plays a file.
#pragma once

#include "tests/desktop/desktop_test.h"
#include "tests/support/mp3_samples.h"
#include "tests/support/recording.h"

namespace support {

/// The fixture of tests that need a playing file. The volume is 100, so that the sound equals the
/// file. The sound is recorded from the start.
class PlayingTest : public DesktopTest {
protected:
    explicit PlayingTest(const DisplayOptions& options = {}) : DesktopTest(options) {}

    static constexpr int RATE = 44100;

    /// Makes a file of noise at a path. Returns its samples as another program decodes them.
    [[nodiscard]] Samples makeFile(const std::string& path, double seconds) const;
    /// Turns the volume up by clicks on the loudspeaker.
    void turnUp();
    /// makeFile, turnUp, opens the file and waits until it plays.
    void playFile(double seconds);

    /// Waits for a sound from now on.
    [[nodiscard]] bool waitForSound() const;
    /// Returns the position in the file that is heard next, in seconds, or nothing in silence.
    [[nodiscard]] std::optional<double> heardPlace() const;

    std::string file_;
    Samples samples_;
    std::unique_ptr<Recording> recording_;
};

} // namespace support
