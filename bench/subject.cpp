#include "bench/subject.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace bench {

std::span<const Subject> subjects() {
    static const std::array all{
        Subject{.name = "Zvonivec",
                .program = ZVONIVEC_PROGRAM,
                .ours = true,
                .windowClass = "zvonivec"},
        Subject{.name = "Zvonivec on a bus",
                .program = ZVONIVEC_PROGRAM,
                .ours = true,
                .onBus = true,
                .windowClass = "zvonivec"},
        Subject{.name = "empty window",
                .program = EMPTY_WINDOW_PROGRAM,
                .plays = false,
                .windowClass = "bench_empty_window"},
        Subject{.name = "moving window",
                .program = MOVING_WINDOW_PROGRAM,
                .plays = false,
                .windowClass = "bench_moving_window"},
        Subject{.name = "audacious",
                .program = "audacious",
                .windowClass = "Audacious",
                .stopKey = "v",
                .playKey = "x",
                .settingsFile = ".config/audacious/config",
                .settings = "[audacious]\noutput_plugin=pulse\n"},
        Subject{.name = "qmmp",
                .program = "qmmp",
                .windowClass = "Qmmp",
                .stopKey = "v",
                .playKey = "x",
                .settingsFile = ".qmmp/qmmprc",
                .settings = "[Output]\ncurrent_plugin=pulse\n"},
        // The plain X11 output: the usual output is light only with a graphics card.
        Subject{.name = "mpv",
                .program = "mpv",
                .options = {"--force-window=yes", "--vo=x11", "--ao=pulse"},
                .idleOptions = {"--force-window=yes", "--idle=yes", "--vo=x11", "--ao=pulse"},
                .windowClass = "mpv"},
        Subject{.name = "mpg123",
                .program = "mpg123",
                .options = {"-q", "-o", "pulse"},
                .hasWindow = false},
    };
    return all;
}

bool isInstalled(const Subject& subject) {
    const std::filesystem::path program(subject.program);
    if (program.has_parent_path()) {
        return true;
    }
    const char* path = std::getenv("PATH");
    std::istringstream folders(path != nullptr ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');) {
        if (std::filesystem::exists(folder / program)) {
            return true;
        }
    }
    return false;
}

} // namespace bench
