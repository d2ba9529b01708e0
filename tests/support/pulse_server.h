// A sound server of the test's own: PulseAudio with a sink that goes nowhere, in a folder of its
// own, out of the way of any other one.
#pragma once

#include "tests/support/process.h"

#include <csignal>
#include <string>

namespace support {

class PulseServer {
public:
    /// Sample format of the sink: samples of this rate and channel count pass through unchanged.
    struct Sink {
        int rate = 44100;
        int channels = 2;
    };

    PulseServer() : PulseServer(Sink()) {}
    /// Starts the server and waits until it answers.
    explicit PulseServer(const Sink& sink);

    /// Whether it answers.
    bool running();

    /// Variables that lead SDL, parec and every other client to this server, and to no other.
    [[nodiscard]] Process::Environment environment() const;
    /// The same for clients that are in no other session: nothing of the user's.
    [[nodiscard]] Process::Environment sessionOfClients() const;
    /// Sets these variables in the test process itself.
    void useInThisProcess() const;

    /// Ends the server at once, as a crash would.
    void kill();
    /// Makes the server hang: it lives, and answers nobody until thaw.
    void freeze() const { process_.signal(SIGSTOP); }
    void thaw() const { process_.signal(SIGCONT); }
    /// Starts it again at the same address.
    void restart();

    /// Name of the source that hears what the sink plays.
    [[nodiscard]] static std::string monitor() { return "test_sink.monitor"; }
    [[nodiscard]] const Sink& sink() const { return sink_; }

    /// How many streams are playing to the server now; -1 when it doesn't answer.
    [[nodiscard]] int playingStreams() const;
    /// What `pactl list sink-inputs` says.
    [[nodiscard]] std::string describeStreams() const;

private:
    [[nodiscard]] std::string address() const { return "unix:" + folder_.file("socket"); }

    TemporaryFolder folder_;
    Sink sink_;
    Process process_;
};

} // namespace support
