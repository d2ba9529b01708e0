// A desktop with a sound server and the player on it, for every test.
#pragma once

#include "tests/desktop/desktops.h"
#include "tests/desktop/picture.h"
#include "tests/desktop/player_window.h"
#include "tests/support/display.h"
#include "tests/support/pointer.h"
#include "tests/support/pulse_server.h"
#include "tests/support/screenshot.h"
#include "tests/support/window.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace support {

/// The real program as a process. It runs from a copy in a folder of its own, so that its settings
/// file doesn't lie in the build.
class Player {
public:
    /// Starts the program. Makes the folder when there is none and leaves its files, so the
    /// settings survive from one Player to the next.
    Player(const Display& display, const std::string& folder, Process::Environment environment);

    /// Waits for the window; False when it didn't appear in time. The scale is in screen pixels to
    /// a pixel of the window.
    bool waitUntilShown(int scale = 1);
    [[nodiscard]] const Display& display() const { return *display_; }
    /// Needs a window that has been shown.
    [[nodiscard]] const Window& window() const { return *window_; }
    Process& process() { return process_; }
    /// Returns what the program wrote to standard error, without what only depends on the machine.
    [[nodiscard]] std::string messages() const;

    /// Returns a point of the window in coordinates of the screen.
    [[nodiscard]] Point onScreen(Point place) const;
    [[nodiscard]] Screenshot screenshot() const;
    [[nodiscard]] Screenshot screenshot(const Rectangle& part) const;
    [[nodiscard]] bool showsButton(player::Button button, player::Look look) const;
    [[nodiscard]] bool showsMark(player::Button command) const;
    /// Whether the window shows that a file is loaded: enabled buttons, times and bar.
    [[nodiscard]] bool showsPlayingLook() const;
    [[nodiscard]] bool showsIdleLook() const;
    /// Whether the window shows the texts exactly as labels paint them.
    [[nodiscard]] bool showsStatus(const std::string& text) const;
    [[nodiscard]] bool showsRunningTime(const std::string& text) const;
    [[nodiscard]] bool showsLength(const std::string& text) const;
    /// Returns the left edge of a text, in pixels from the left edge of the display. Returns
    /// nothing when less than half of the display shows this text.
    [[nodiscard]] std::optional<int> informationLeft(const std::string& text) const;
    /// Returns the lit part of the bar, 0 to 1, or nothing while the bar is hidden.
    [[nodiscard]] std::optional<double> barValue() const;

private:
    /// Whether a rectangle of the window shows the same as a picture of the window there.
    [[nodiscard]] bool shows(const Picture& window, const Rectangle& place) const;

    const Display* display_;
    std::string messageFile_;
    Process process_;
    std::optional<Window> window_;
};

/// The fixture. A failed test leaves a picture of the screen and the player's messages in the
/// folder desktop-failures of the build.
class DesktopTest : public testing::Test {
protected:
    explicit DesktopTest(const DisplayOptions& options = {}) : display_(options) {}

    /// Starts a player and waits for its window. Fails the test when it doesn't appear.
    void SetUp() override;
    void TearDown() override;
    void startPlayer();
    [[nodiscard]] Process::Environment environment() const;

    void moveTo(Point place) const { pointer_.moveTo(player_->onScreen(place)); }
    void click(Point place, int button = 1) const {
        pointer_.click(player_->onScreen(place), button);
    }
    void click(player::Button button) const { click(player::BUTTONS.at(button).middle()); }

    /// Waits for a dialog or message box that can take keys, and returns it.
    [[nodiscard]] std::optional<Window> waitForDialog() const;
    [[nodiscard]] std::optional<Window> waitForMessageBox() const;
    [[nodiscard]] std::optional<Window>
    waitForWindowWithKeyboard(const std::function<bool(const Window&)>& condition) const;
    /// Clicks the logo, types a path into the dialog, confirms it and waits until the dialog is
    /// gone. Without a path it cancels the dialog.
    void openFile(const std::string& path);
    /// Does the same in a dialog that is already open.
    void chooseFile(const std::string& path);
    /// Ends a dialog or a message box with a key and waits until it is gone.
    void answer(const Window& window, const char* key) const;

    TemporaryFolder folder_;
    Display display_;
    PulseServer sound_;
    Pointer pointer_{display_};
    Keyboard keyboard_{display_};
    std::unique_ptr<Player> player_;

private:
    void keepEvidence() const;
};

} // namespace support
