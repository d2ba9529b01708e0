// A desktop with a sound server and the player on it: every test's start.
#pragma once

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

/// The real program, running as a process of its own from a copy in a folder of its own, so that
/// its settings file lies there and not in the build.
class Player {
public:
    /// Starts it. The folder is made when it isn't there; what is in it stays, so the settings
    /// survive from one Player to the next.
    Player(const Display& display, const std::string& folder, Process::Environment environment);

    /// False when its window didn't appear within the time. The scale: screen pixels to one of the
    /// window's own.
    bool waitUntilShown(int scale = 1);
    [[nodiscard]] const Display& display() const { return *display_; }
    /// Only once it has been shown.
    [[nodiscard]] const Window& window() const { return *window_; }
    Process& process() { return process_; }
    /// What it wrote to standard error.
    [[nodiscard]] std::string messages() const;

    /// A place of the window on the screen.
    [[nodiscard]] Point onScreen(Point place) const;
    [[nodiscard]] Screenshot screenshot() const;
    [[nodiscard]] Screenshot screenshot(const Rectangle& part) const;
    [[nodiscard]] bool showsButton(player::Button button, player::Look look) const;
    [[nodiscard]] bool showsMark(player::Button command) const;
    /// Buttons to play with, times and bar: a file is loaded.
    [[nodiscard]] bool showsPlayingLook() const;
    [[nodiscard]] bool showsIdleLook() const;
    /// The texts, to the pixel, as the labels write them.
    [[nodiscard]] bool showsStatus(const std::string& text) const;
    [[nodiscard]] bool showsRunningTime(const std::string& text) const;
    [[nodiscard]] bool showsLength(const std::string& text) const;
    /// Where a text's left edge is in the display's window, in pixels from its left edge; nothing
    /// when at least half of the window doesn't show this text.
    [[nodiscard]] std::optional<int> informationLeft(const std::string& text) const;
    /// The bar's lit part, 0 to 1; nothing while the bar is hidden.
    [[nodiscard]] std::optional<double> barValue() const;

private:
    /// What the window shows in a rectangle is a picture of the window there.
    [[nodiscard]] bool shows(const Picture& window, const Rectangle& place) const;

    const Display* display_;
    std::string messageFile_;
    Process process_;
    std::optional<Window> window_;
};

/// The fixture. A failed test leaves a picture of the screen and what the player wrote in the build
/// folder's desktop-failures.
class DesktopTest : public testing::Test {
protected:
    explicit DesktopTest(const DisplayOptions& options = {}) : display_(options) {}

    /// Starts a player and waits for its window. A fatal failure when it doesn't come.
    void SetUp() override;
    void TearDown() override;
    void startPlayer();
    [[nodiscard]] Process::Environment environment() const;

    void moveTo(Point place) const { pointer_.moveTo(player_->onScreen(place)); }
    void click(Point place, int button = 1) const {
        pointer_.click(player_->onScreen(place), button);
    }
    void click(player::Button button) const { click(player::BUTTONS.at(button).middle()); }

    /// The dialog or message box that is shown now, once it can take keys; waited for.
    [[nodiscard]] std::optional<Window> waitForDialog() const;
    [[nodiscard]] std::optional<Window> waitForMessageBox() const;
    [[nodiscard]] std::optional<Window>
    waitForWindowWithKeyboard(const std::function<bool(const Window&)>& condition) const;
    /// Clicks the logo, types a path into the dialog and confirms it; returns when that dialog is
    /// gone. Without a path the dialog is cancelled.
    void openFile(const std::string& path);
    /// The same in a dialog that is already open.
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
