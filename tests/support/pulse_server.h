// A private sound server for a test: PulseAudio with a sink that discards its sound. It uses a
// folder of its own and doesn't disturb other servers.
#pragma once

#include "tests/support/process.h"

#include <csignal>
#include <string>
#include <vector>

namespace support {

class PulseServer {
public:
    enum class Kind {
        rewinding,   ///< PulseAudio with a sink that takes back what it has mixed, as sound cards
        noRewinding, ///< PulseAudio with a sink that doesn't, as Bluetooth
        pipeWire,
    };

    /// Sample format of the sink. Samples with this rate and channel count pass through unchanged.
    struct Sink {
        int rate = 44100;
        int channels = 2;
    };

    PulseServer() : PulseServer(Sink()) {}
    /// Starts the server and waits until it answers. A recording of a sink that takes back what it
    /// has mixed may miss the start of a sound, so another one is the default.
    explicit PulseServer(const Sink& sink, Kind kind = Kind::noRewinding);
    PulseServer(const PulseServer&) = delete;
    PulseServer& operator=(const PulseServer&) = delete;
    ~PulseServer();

    /// Whether the server answers.
    bool running();

    /// Returns variables that lead SDL, parec and all other clients to this server only.
    [[nodiscard]] Process::Environment environment() const;
    /// Returns the same for clients outside any other session: nothing is the user's.
    [[nodiscard]] Process::Environment sessionOfClients() const;
    /// Sets these variables in the test process.
    void useInThisProcess() const;

    /// Kills the server, as a crash would.
    void kill();
    /// Makes the server hang: until thaw() it runs but answers nobody.
    void freeze() const { signalAll(SIGSTOP); }
    void thaw() const { signalAll(SIGCONT); }
    /// Starts the server again at the same address.
    void restart();

    /// Returns the name of the source that records what the sink plays.
    [[nodiscard]] static std::string monitor() { return "test_sink.monitor"; }
    [[nodiscard]] const Sink& sink() const { return sink_; }
    [[nodiscard]] Kind kind() const { return kind_; }
    /// Processes of the server, for what they cost.
    [[nodiscard]] const std::vector<Process>& processes() const { return processes_; }

    /// Returns the number of streams that are playing, or -1 when the server doesn't answer.
    [[nodiscard]] int playingStreams() const;
    /// Returns the output of `pactl list sink-inputs`.
    [[nodiscard]] std::string describeStreams() const;

private:
    [[nodiscard]] std::string address() const { return "unix:" + folder_.file("socket"); }
    [[nodiscard]] std::string ask(const std::string& subject) const;
    void startPulseAudio(const Process::Options& options);
    void startPipeWire(Process::Options options);
    void signalAll(int number) const;

    TemporaryFolder folder_;
    Sink sink_;
    Kind kind_;
    std::vector<Process> processes_; ///< in the order of their start
};

} // namespace support
