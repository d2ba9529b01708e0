// A private message bus for a test.
#pragma once

#include "tests/support/process.h"

#include <csignal>
#include <string>

namespace support {

/// A bus with the system's services, which it starts in the environment that it is given.
class MessageBus {
public:
    explicit MessageBus(const Process::Environment& environment);

    /// Whether programs can connect.
    [[nodiscard]] bool running() const { return running_; }
    /// Returns the variables for programs that are to use it.
    [[nodiscard]] Process::Environment environment() const;

    /// Kills the bus, as a crash would.
    void kill() { process_.signal(SIGKILL); }

private:
    TemporaryFolder folder_;
    Process process_;
    bool running_ = false;
};

} // namespace support
