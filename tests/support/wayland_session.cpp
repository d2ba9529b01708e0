#include "tests/support/wayland_session.h"

#include "tests/support/private_session.h"
#include "tests/support/screenshot.h"
#include "tests/support/window.h"

#include <csignal>
#include <filesystem>
#include <sstream>
#include <string_view>
#include <unistd.h>

namespace support {

namespace {

constexpr std::string_view NATIVE = "_native";

/// Compositors grant themselves a higher priority, by a right of the file that a container may
/// refuse to honour. A copy of the file has no such right. KWin looks at its own name.
std::string copyOfProgram(const std::string& name, const std::string& folder) {
    std::error_code failed;
    std::filesystem::copy_file("/usr/bin/" + name, folder + '/' + name, failed);
    return folder + '/' + name;
}

} // namespace

WaylandSession::WaylandSession(const Display& display, const std::string& name)
    : display_(&display), hasXServer_(!name.ends_with(NATIVE)) {
    const std::string compositor = hasXServer_ ? name : name.substr(0, name.size() - NATIVE.size());
    std::filesystem::permissions(folder_.path(), std::filesystem::perms::owner_all);
    Process::Options options;
    options.environment = display.environment();
    const std::string home = folder_.file("home");
    for (const auto& [variable, value] : Process::Environment{
             {"HOME", home},
             {"XDG_RUNTIME_DIR", folder_.path()},
             {"GSETTINGS_BACKEND", "memory"},
             {"LIBGL_ALWAYS_SOFTWARE", "1"},
             {"WLR_BACKENDS", "x11"},
             {"WLR_RENDERER", "pixman"},
             {"KWIN_COMPOSE", "Q"},
             {"MUTTER_DEBUG_DUMMY_MODE_SPECS",
              std::to_string(display.width()) + 'x' + std::to_string(display.height())}}) {
        options.environment.emplace_back(variable, value);
    }
    std::filesystem::create_directories(home);
    options.errorFile = folder_.file("log");
    options.directory = folder_.path();
    if (!startBus(options)) {
        problem_ = "the message bus doesn't start";
        return;
    }
    options.environment.emplace_back("DBUS_SESSION_BUS_ADDRESS",
                                     "unix:path=" + folder_.file("bus"));
    compositor_ = Process(command(compositor), options);
    // KWin leaves the ground black.
    const bool paints = compositor != "kwin_wayland";
    const auto coversTheScreen = [&] {
        const int right = display.width() - 1;
        const int bottom = display.height() - 1;
        return paints ? Screenshot(display, {right, bottom, 1, 1}).at(0, 0) != 0
                      : findWindow(display, [&](const Window& window) {
                            return window.isShown() &&
                                   window.place() == Rectangle{0, 0, right + 1, bottom + 1};
                        }).has_value();
    };
    if (!waitUntil([&] { return findServers(compositor) && coversTheScreen(); },
                   std::chrono::seconds(30))) {
        problem_ = name + " doesn't start: " + readFile(folder_.file("log"));
    }
}

WaylandSession::~WaylandSession() {
    compositor_.terminate();
    bus_.terminate();
}

bool WaylandSession::startBus(const Process::Options& options) {
    const std::string socket = folder_.file("bus");
    bus_ = Process(
        {"dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=unix:path=" + socket},
        options);
    return waitUntil([&] { return std::filesystem::exists(socket); });
}

std::vector<std::string> WaylandSession::command(const std::string& compositor) const {
    const std::string width = std::to_string(display_->width());
    const std::string height = std::to_string(display_->height());
    // The compositor's own child knows the servers' names.
    // The compositor's own child knows the servers' names.
    const std::string announce = folder_.file("announce");
    writeFile(
        announce,
        "#!/bin/sh\necho $WAYLAND_DISPLAY $DISPLAY $XAUTHORITY >written\nmv written announced\n" +
            // mutter ends when its child ends.
            std::string(compositor == "mutter_wayland" ? "exec tail --pid=$PPID -f /dev/null\n"
                                                       : ""));
    std::filesystem::permissions(announce, std::filesystem::perms::owner_all);
    std::vector<std::string> command;
    if (compositor == "sway") {
        writeFile(folder_.file("sway.config"), "output * resolution " + width + 'x' + height +
                                                   "\noutput * bg #FF00FF solid_color\nxwayland " +
                                                   (hasXServer_ ? "enable" : "disable") +
                                                   "\nexec " + announce + '\n');
        if (geteuid() == 0) { // sway refuses to run as root
            command = {"unshare", "--user", "--map-user=1000", "--map-group=1000"};
        }
        command.insert(command.end(), {"sway", "-c", folder_.file("sway.config")});
    } else if (compositor == "weston") {
        writeFile(folder_.file("weston.ini"),
                  std::string("[core]\nidle-time=0\nxwayland=") + (hasXServer_ ? "true" : "false") +
                      "\n[shell]\nbackground-color=0xFFFF00FF\npanel-position=none\nlocking=false\n"
                      "animation=none\nstartup-animation=none\nclose-animation=none\n");
        command = {"weston",
                   "--backend=x11-backend.so",
                   "--use-pixman",
                   "--width=" + width,
                   "--height=" + height,
                   "--config=" + folder_.file("weston.ini"),
                   "--socket=wayland-weston"};
    } else if (compositor == "mutter_wayland") {
        command = {"mutter", "--wayland", "--nested"};
        if (!hasXServer_) {
            command.emplace_back("--no-x11");
        }
        command.insert(command.end(), {"--", announce});
    } else if (compositor == "kwin_wayland") {
        command = {copyOfProgram(compositor, folder_.path()),
                   "--x11-display",
                   display_->name(),
                   "--width",
                   width,
                   "--height",
                   height};
        if (hasXServer_) {
            command.emplace_back("--xwayland");
        }
        command.push_back(announce);
    }
    return command;
}

bool WaylandSession::findServers(const std::string& compositor) {
    if (compositor == "weston") {
        // Its standard error is its log.
        const std::string log = readFile(folder_.file("log"));
        constexpr std::string_view listening = "xserver listening on display ";
        const std::size_t found = log.find(listening);
        waylandName_ = "wayland-weston";
        if (found != std::string::npos) {
            std::istringstream(log.substr(found + listening.size())) >> xName_;
        }
        return std::filesystem::exists(folder_.file(waylandName_)) &&
               hasXServer_ == !xName_.empty();
    }
    std::istringstream(readFile(folder_.file("announced"))) >> waylandName_ >> xName_ >> authority_;
    return !waylandName_.empty() && (!hasXServer_ || !xName_.empty());
}

Process::Environment WaylandSession::environment() const {
    Process::Environment environment = display_->environment();
    environment.emplace_back("DISPLAY", hasXServer_ ? xName_ : "");
    environment.emplace_back("XAUTHORITY", authority_);
    environment.emplace_back("WAYLAND_DISPLAY", folder_.file(waylandName_));
    return environment;
}

void WaylandSession::kill() {
    compositor_.signal(SIGKILL);
    compositor_.waitForExit();
}

} // namespace support
