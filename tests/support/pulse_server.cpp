#include "tests/support/pulse_server.h"

#include "tests/support/private_session.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>

namespace support {

namespace {

/// PipeWire's sink, in the syntax of its configuration.
std::string pipeWireSink(const PulseServer::Sink& sink) {
    const std::string rate = std::to_string(sink.rate);
    return "context.properties = { default.clock.rate = " + rate +
           " default.clock.allowed-rates = [ " + rate +
           " ] }\n"
           "context.objects = [ { factory = adapter args = {\n"
           "  factory.name = support.null-audio-sink node.name = test_sink\n"
           "  media.class = Audio/Sink object.linger = true\n"
           "  audio.rate = " +
           rate + " audio.position = [ " + (sink.channels == 1 ? "MONO" : "FL FR") +
           " ] monitor.channel-volumes = false } } ]\n";
}

} // namespace

PulseServer::PulseServer(const Sink& sink, Kind kind) : sink_(sink), kind_(kind) {
    restart();
}

PulseServer::~PulseServer() {
    kill();
}

void PulseServer::restart() {
    kill();
    // A killed server leaves these, and its successor would respect them.
    std::error_code ignored;
    for (const char* name : {"socket", "pid", "bus", "pipewire-0", "pipewire-0.lock", "pulse"}) {
        std::filesystem::remove_all(folder_.file(name), ignored);
    }
    Process::Options options;
    options.environment = privateSession(folder_.path());
    options.errorFile = folder_.file("log");
    if (kind_ == Kind::pipeWire) {
        startPipeWire(options);
    } else {
        startPulseAudio(options);
    }
    waitUntil([this] { return !processes_.back().running() || running(); });
}

void PulseServer::startPulseAudio(const Process::Options& options) {
    Process::Options own = options;
    // Only the server's own state; a server that is told an address looks for itself there.
    own.environment.emplace_back("PULSE_RUNTIME_PATH", folder_.path());
    own.environment.emplace_back("PULSE_COOKIE", folder_.file("cookie"));
    processes_.emplace_back(
        std::vector<std::string>{
            "pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--disallow-exit",
            "--realtime=yes", "--high-priority=yes", // where it may: a busy machine makes gaps
            // Others change the samples of a stream that may change its rate, though it has the
            // sink's. Wine 10 asks for such a stream.
            "--resample-method=trivial",
            "--load=module-native-protocol-unix auth-anonymous=1 socket=" + folder_.file("socket"),
            "--load=module-null-sink sink_name=test_sink format=s16le rate=" +
                std::to_string(sink_.rate) + " channels=" + std::to_string(sink_.channels) +
                (kind_ == Kind::noRewinding ? " norewinds=1" : "")},
        own);
}

void PulseServer::startPipeWire(Process::Options options) {
    const std::string configuration = folder_.file("config");
    std::filesystem::create_directories(configuration + "/pipewire/pipewire.conf.d");
    std::filesystem::create_directories(configuration + "/pipewire/pipewire-pulse.conf.d");
    writeFile(configuration + "/pipewire/pipewire.conf.d/sink.conf", pipeWireSink(sink_));
    writeFile(configuration + "/pipewire/pipewire-pulse.conf.d/address.conf",
              "pulse.properties = { server.address = [ \"" + address() + "\" ] }\n");
    const std::string bus = "unix:path=" + folder_.file("bus");
    options.environment.emplace_back("XDG_CONFIG_HOME", configuration);
    options.environment.emplace_back("DBUS_SESSION_BUS_ADDRESS", bus);
    // The session manager, which connects streams with the sink, wants a bus.
    processes_.emplace_back(
        std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--address=" + bus},
        options);
    waitUntil([this] { return std::filesystem::exists(folder_.file("bus")); });
    processes_.emplace_back(std::vector<std::string>{"pipewire"}, options);
    waitUntil([this] { return std::filesystem::exists(folder_.file("pipewire-0")); });
    processes_.emplace_back(std::vector<std::string>{"wireplumber"}, options);
    processes_.emplace_back(std::vector<std::string>{"pipewire-pulse"}, options);
}

bool PulseServer::running() {
    if (processes_.empty() || !processes_.back().running() || playingStreams() < 0) {
        return false;
    }
    // PipeWire answers before its session manager has made the sink the one to play to.
    return kind_ != Kind::pipeWire ||
           ask("info").find("Default Sink: test_sink") != std::string::npos;
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
    signalAll(SIGKILL);
    for (Process& process : processes_) {
        process.waitForExit();
    }
    processes_.clear();
}

void PulseServer::signalAll(int number) const {
    for (const Process& process : processes_) {
        process.signal(number);
    }
}

/// What pactl says; "error" when the server doesn't answer.
std::string PulseServer::ask(const std::string& subject) const {
    Process::Options options;
    options.environment = sessionOfClients();
    options.outputFile = folder_.file("answer");
    options.errorFile = "/dev/null";
    std::vector<std::string> command = {"pactl"};
    if (subject != "info") {
        command.emplace_back("list");
    }
    command.push_back(subject);
    return run(command, options, std::chrono::seconds(5)) == 0 ? readFile(options.outputFile)
                                                               : "error";
}

std::string PulseServer::describeStreams() const {
    return ask("sink-inputs");
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
