#include "tests/support/pulse_server.h"

#include "tests/support/private_session.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>

namespace support {

PulseServer::PulseServer(const Sink& sink) : sink_(sink) {
    restart();
}

void PulseServer::restart() {
    process_.terminate();
    // A killed server leaves these files, which the next one would take for a running server's.
    std::error_code ignored;
    std::filesystem::remove(folder_.file("socket"), ignored);
    std::filesystem::remove(folder_.file("pid"), ignored);

    Process::Options options;
    options.environment = privateSession(folder_.path());
    // Only the server's own state; a server that is told an address looks for itself there.
    options.environment.emplace_back("PULSE_RUNTIME_PATH", folder_.path());
    options.environment.emplace_back("PULSE_COOKIE", folder_.file("cookie"));
    options.errorFile = folder_.file("log");
    process_ = Process(
        {"pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--disallow-exit",
         "--realtime=yes",
         "--high-priority=yes", // where that is allowed: a busy machine causes gaps
         "--load=module-native-protocol-unix auth-anonymous=1 socket=" + folder_.file("socket"),
         "--load=module-null-sink sink_name=test_sink format=s16le rate=" +
             std::to_string(sink_.rate) + " channels=" + std::to_string(sink_.channels) +
             " norewinds=1"},
        options);
    waitUntil([this] { return !process_.running() || running(); });
}

bool PulseServer::running() {
    return process_.running() && playingStreams() >= 0;
}

Process::Environment PulseServer::environment() const {
    return {{"PULSE_SERVER", address()},
            {"PULSE_RUNTIME_PATH", folder_.path()},
            {"PULSE_COOKIE", folder_.file("cookie")},
            {"SDL_AUDIODRIVER", "pulseaudio"}};
}

Process::Environment PulseServer::sessionOfClients() const {
    Process::Environment all = privateSession(folder_.path());
    const Process::Environment own = environment();
    all.insert(all.end(), own.begin(), own.end());
    return all;
}

void PulseServer::useInThisProcess() const {
    setInThisProcess(environment());
}

void PulseServer::kill() {
    process_.signal(SIGKILL);
    process_.waitForExit();
}

std::string PulseServer::describeStreams() const {
    Process::Options options;
    options.environment = sessionOfClients();
    options.outputFile = folder_.file("streams");
    options.errorFile = "/dev/null";
    return run({"pactl", "list", "sink-inputs"}, options, std::chrono::seconds(5)) == 0
               ? readFile(options.outputFile)
               : "error";
}

int PulseServer::playingStreams() const {
    const std::string text = describeStreams();
    if (text == "error") {
        return -1;
    }
    int count = 0;
    for (std::size_t at = 0; (at = text.find("Sink Input #", at)) != std::string::npos; ++at) {
        ++count;
    }
    return count;
}

} // namespace support
