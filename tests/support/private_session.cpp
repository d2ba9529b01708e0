#include "tests/support/private_session.h"

#include <cstdlib>
#include <filesystem>

namespace support {

Process::Environment privateSession(const std::string& folder) {
    const std::string home = folder + "/home";
    std::filesystem::create_directories(home);
    Process::Environment environment = {
        {"HOME", home},
        {"XDG_RUNTIME_DIR", folder},
        {"LC_ALL", "C.UTF-8"},
        // An address that no library can use. Without an address libraries start a bus of their
        // own.
        {"DBUS_SESSION_BUS_ADDRESS", "disabled:"},
        {"NO_AT_BRIDGE", "1"},
    };
    for (const char* name : {"DISPLAY",
                             "WAYLAND_DISPLAY",
                             "XAUTHORITY",
                             "SESSION_MANAGER",
                             "DESKTOP_SESSION",
                             "XDG_SESSION_TYPE",
                             "XDG_CURRENT_DESKTOP",
                             "XDG_CONFIG_HOME",
                             "XDG_DATA_HOME",
                             "XDG_CACHE_HOME",
                             "XDG_STATE_HOME",
                             "AT_SPI_BUS_ADDRESS",
                             "XMODIFIERS",
                             "QT_QPA_PLATFORM",
                             "QT_QPA_PLATFORMTHEME",
                             "QT_STYLE_OVERRIDE",
                             "QT_SCALE_FACTOR",
                             "QT_SCREEN_SCALE_FACTORS",
                             "QT_FONT_DPI",
                             "QT_IM_MODULE",
                             "QT_ACCESSIBILITY",
                             "PULSE_SERVER",
                             "PULSE_RUNTIME_PATH",
                             "PULSE_STATE_PATH",
                             "PULSE_CONFIG_PATH",
                             "PULSE_COOKIE",
                             "PULSE_CLIENTCONFIG",
                             "PULSE_SINK",
                             "PULSE_LATENCY_MSEC",
                             "PIPEWIRE_REMOTE",
                             "PIPEWIRE_RUNTIME_DIR",
                             "PIPEWIRE_CONFIG_DIR",
                             "PIPEWIRE_LATENCY",
                             "SDL_AUDIODRIVER",
                             "SDL_AUDIO_DRIVER"}) {
        environment.emplace_back(name, "");
    }
    return environment;
}

void setInThisProcess(const Process::Environment& environment) {
    for (const auto& [name, value] : environment) {
        if (value.empty()) {
            unsetenv(name.c_str());
        } else {
            setenv(name.c_str(), value.c_str(), 1);
        }
    }
}

} // namespace support
