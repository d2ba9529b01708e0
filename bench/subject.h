// The programs that are compared, and how each is told what to do.
#pragma once

#include "tests/support/display.h"
#include "tests/support/process.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

/// One player. A desktop's home folder is empty, so each shows what its users see at first, but for
/// what stands here.
struct Subject {
    std::string_view name;
    std::string_view program;                ///< looked up in PATH; ours is given as a path
    bool ours = false;                       ///< told what to do through its dialog and its buttons
    std::vector<std::string_view> options{}; ///< in front of the file
    std::vector<std::string_view> idleOptions{}; ///< without a file
    bool hasWindow = true;
    std::string_view windowClass{}; ///< X class
    /// Keys that stop it and play again, in its window; empty: there is no stop to come back from.
    std::string_view stopKey{}, playKey{};
    /// A settings file in the home folder that leads its sound to the sound server.
    std::string_view settingsFile{}, settings{};
};

/// Our own player first. It takes no file on its command line.
std::span<const Subject> subjects();

/// Whether it is installed; ours always is.
bool isInstalled(const Subject& subject);

} // namespace bench
