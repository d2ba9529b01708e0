#include "tests/support/message_bus.h"

#include <filesystem>

namespace support {

MessageBus::MessageBus(const Process::Environment& environment) {
    const std::string socket = folder_.file("bus");
    Process::Options options;
    options.environment = environment;
    options.errorFile = folder_.file("log");
    process_ = Process(
        {"dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=unix:path=" + socket},
        options);
    running_ = waitUntil([&] { return std::filesystem::exists(socket); });
}

Process::Environment MessageBus::environment() const {
    return {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + folder_.file("bus")}};
}

} // namespace support
