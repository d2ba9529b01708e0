// seccomp: a process has the kernel refuse it calls that it never makes.
#pragma once

#include <cstdint>

namespace zvonivec {

enum class Sockets : std::uint8_t {
    local,   ///< of this machine's processes alone
    network, ///< and of the internet protocols
};

/// Has the kernel refuse the calls that give power over other processes or over the system, and all
/// sockets but these. A refused call fails with an error; nothing is ended. Returns False when the
/// kernel has no such filters: then all calls stay as they were.
bool refuseCalls(Sockets allowed);

} // namespace zvonivec
