// The player for Windows under Wine, seen and used from this system's desktop.
#pragma once

#include "tests/desktop/menu.h"

#include <string>

namespace support {

/// The fixture. Rules
///  * WINEPREFIX names a prefix that has been set up. The tests use it one after another, and each
///    test ends all processes in it.
///  * Texts can't be compared as pixels, because Wine draws its own letters. windowTexts() reads
///    them.
class WindowsTest : public MenuTest {
protected:
    /// The settings are the content of MP3.ini before the start. Without settings there is no file.
    explicit WindowsTest(std::string settings = {}, const DisplayOptions& options = {})
        : MenuTest(options), firstSettings_(std::move(settings)) {}

    void SetUp() override;
    void TearDown() override;

    [[nodiscard]] std::string settingsPath() const { return folder_.file("program/MP3.ini"); }
    [[nodiscard]] std::string settings() const { return readFile(settingsPath()); }

    /// Runs one of Wine's programs in the player's session. Returns its exit code.
    [[nodiscard]] int runInSession(const std::vector<std::string>& argv,
                                   const std::string& outputFile = {}) const;
    /// Returns the titles and texts of all visible windows, as Wine itself reports them.
    [[nodiscard]] std::string windowTexts() const;
    /// Waits for a box or dialog with this title until it accepts keys.
    [[nodiscard]] std::optional<Window> waitForTitle(const std::string& title) const;

    /// Returns Windows' form of a path.
    [[nodiscard]] static std::string windowsPath(std::string path);
    /// Ends a dialog or a message box with a key and waits until it is gone. Presses the key again
    /// when it was too early: Wine shows a window before the window accepts keys.
    void answer(const Window& window, const char* key) const;
    /// Opens a file in the system's dialog, which has been opened before.
    void openInDialog(const std::string& path);

    [[nodiscard]] Point corner() const;
    [[nodiscard]] bool becomesPlacedAt(Point place) const;
    /// Waits until the program has ended. Expects exit code 0.
    [[nodiscard]] bool becomesGone() const;
    /// Moves the pointer over a button. Returns whether the button lights up.
    [[nodiscard]] bool lightsUp(player::Button button) const;
    /// Closes the player with its own button.
    void closePlayer();
    /// The player has ended, and all that it has written is the settings file: nothing else beside
    /// the program, nothing in the user's home, and in the registry nothing of the toolkit's.
    void expectNothingElseWritten() const;

private:
    std::string firstSettings_;
};

} // namespace support
