// The player for Windows, under Wine, seen and used from this system's desktop.
#pragma once

#include "tests/desktop/menu.h"

#include <string>

namespace support {

/// The fixture. Rules
///  * WINEPREFIX names a prefix that has been set up; the tests use it one after another, and each
///    leaves it without processes.
///  * Texts can't be compared as pixels: the letters are Windows' own. windowTexts() reads them.
class WindowsTest : public MenuTest {
protected:
    /// settings: what stands in MP3.ini before the start; empty: there is none.
    explicit WindowsTest(std::string settings = {}, const DisplayOptions& options = {})
        : MenuTest(options), firstSettings_(std::move(settings)) {}

    void SetUp() override;
    void TearDown() override;

    [[nodiscard]] std::string settingsPath() const { return folder_.file("program/MP3.ini"); }
    [[nodiscard]] std::string settings() const { return readFile(settingsPath()); }

    /// Runs one of Wine's programs in the player's session; its exit code.
    [[nodiscard]] int runInSession(const std::vector<std::string>& argv,
                                   const std::string& outputFile = {}) const;
    /// The titles and texts of all windows that are shown, as the system itself tells them.
    [[nodiscard]] std::string windowTexts() const;
    /// A box or dialog with this title, once it can take keys.
    [[nodiscard]] std::optional<Window> waitForTitle(const std::string& title) const;

    /// A path of this system as Windows names it.
    [[nodiscard]] static std::string windowsPath(std::string path);
    /// Opens a file by the real dialog, whichever way that has been opened.
    void openInDialog(const std::string& path);

    [[nodiscard]] Point corner() const;
    [[nodiscard]] bool becomesPlacedAt(Point place) const;
    /// It ends by itself, without an error.
    [[nodiscard]] bool becomesGone() const;
    /// Moves the pointer on a button; whether it lights up.
    [[nodiscard]] bool lightsUp(player::Button button) const;
    /// Closes it with its own button.
    void closePlayer();

private:
    std::string firstSettings_;
};

} // namespace support
