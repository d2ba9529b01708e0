// The programs that are compared, and how each is operated.
#pragma once

#include "tests/support/display.h"
#include "tests/support/process.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

/// A player. The home folder is empty, so each player starts as on its first day, except for the
/// settings here.
struct Subject {
    std::string_view name;
    std::string_view program;                    ///< looked up in PATH; ours is given as a path
    bool ours = false;                           ///< operated through its dialog and its buttons
    bool onBus = false;                          ///< with a session bus, as a desktop has one
    std::vector<std::string_view> options{};     ///< before the file
    std::vector<std::string_view> idleOptions{}; ///< without a file
    bool hasWindow = true;
    bool plays = true;              ///< else only its window is measured
    std::string_view windowClass{}; ///< X class
    /// Keys that stop and play again in its window. Empty: the player can't play again after a
    /// stop.
    std::string_view stopKey{}, playKey{};
    /// A settings file in the home folder that directs the sound to the sound server.
    std::string_view settingsFile{}, settings{};
};

/// Returns our own player first. It takes no file on its command line.
std::span<const Subject> subjects();

/// Returns whether a player is installed. Our own always is.
bool isInstalled(const Subject& subject);

} // namespace bench
