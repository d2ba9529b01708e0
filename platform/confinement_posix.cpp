#include "platform/confinement.h"

#include "platform/file_rights_posix.h"
#include "platform/refused_calls_posix.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <sys/prctl.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace zvonivec {

namespace {

using file_rights::Place;
using file_rights::Right;

std::string_view variable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

bool exists(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

/// Whether the display may be on another machine. The library that connects to it reads the same
/// variable.
bool displayIsElsewhere() {
    const std::string_view display = variable("DISPLAY");
    return !display.empty() && display.front() != ':' && display.front() != '/' &&
           !display.starts_with("unix:");
}

/// Whether a file with settings of the sound library names a server.
bool namesSoundServer(const std::filesystem::path& file) {
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        const auto start = line.find_first_not_of(" \t");
        if (start != std::string::npos && line.compare(start, 14, "default-server") == 0) {
            return true;
        }
    }
    return false;
}

/// Whether the sound server may be on another machine.
bool soundIsElsewhere() {
    const std::string_view server = variable("PULSE_SERVER");
    if (!server.empty()) {
        return server.front() != '/' && !server.starts_with("unix:");
    }
    const std::string home(variable("HOME"));
    std::vector<std::filesystem::path> files{"/etc/pulse/client.conf",
                                             home + "/.config/pulse/client.conf",
                                             home + "/.pulse/client.conf"};
    std::error_code error;
    for (std::filesystem::directory_iterator entry("/etc/pulse/client.conf.d", error), end;
         !error && entry != end; entry.increment(error)) {
        files.push_back(entry->path());
    }
    return std::any_of(files.begin(), files.end(), namesSoundServer);
}

/// The folder in which the session's programs keep their sockets.
std::string sessionFolder() {
    const std::string_view folder = variable("XDG_RUNTIME_DIR");
    return folder.empty() ? "/run/user/" + std::to_string(getuid()) : std::string(folder);
}

bool soundServerRuns() {
    return !variable("PULSE_SERVER").empty() || exists(sessionFolder() + "/pulse/native");
}

/// Whether the sound library may have to start a server, which would inherit the confinement, and
/// keep it when the player has gone.
bool mayStartSoundServer() {
    return !soundServerRuns() && (exists("/usr/bin/pulseaudio") || exists("/bin/pulseaudio"));
}

/// The places in which files are changed, and by whom.
std::vector<Place> writtenPlaces() {
    std::vector<Place> places{
        {"/dev/null", Right::write},         // every library
        {"/dev/shm", Right::writeAndRename}, // sound and pictures that processes share
        {"/dev/snd", Right::write},          // ALSA
        {"/dev/dri", Right::write},          // the toolkit's connection to the display
        {sessionFolder() + "/dconf", Right::writeAndRename}, // the desktop's settings, when read
    };
    if (!soundServerRuns()) {
        places.push_back({"/tmp", Right::makeSockets}); // ALSA, where programs share a card
    }
    std::error_code error;
    const std::filesystem::path program =
        std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    if (!error) {
        places.push_back({program.string(), Right::writeAndRename}); // MP3.ini
        const auto settings = std::filesystem::weakly_canonical(program / "MP3.ini", error);
        if (!error) {
            places.push_back({settings.parent_path().string(), Right::writeAndRename});
        }
    }
    return places;
}

} // namespace

Confinement confine() {
    Confinement reached;
    if (mayStartSoundServer() || prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) {
        return reached;
    }
    reached.files = file_rights::giveUpAllBut(writtenPlaces());
    reached.calls =
        refuseCalls(displayIsElsewhere() || soundIsElsewhere() ? Sockets::network : Sockets::local);
    return reached;
}

} // namespace zvonivec
