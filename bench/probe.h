// The cost of a running process, from the kernel.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <sys/types.h>

namespace bench {

/// Counters of a process and all its threads. Threads that have ended count where the kernel adds
/// them.
struct Cost {
    double processor = 0; ///< seconds on a processor, to the nanosecond
    double wakeUps = 0;   ///< how often its threads went to sleep
};

/// Returns zeros when there is no such process.
Cost costOf(pid_t process);

/// Returns the processor seconds of the living threads by their names. Threads without a name of
/// their own share the program's name.
std::map<std::string, double> threadsOf(pid_t process);

struct Memory {
    double proportional = 0; ///< bytes; a shared page is divided among its processes
    double ownWritten = 0;   ///< bytes of pages that this process alone has, and has written
};

Memory memoryOf(pid_t process);

/// Returns the joules that the processor's package has taken since an unknown time, all programs
/// together; nothing where the kernel doesn't show them.
std::optional<double> packageEnergy();

/// Returns the files of the shared libraries that are mapped, plugins included.
std::set<std::string> librariesOf(pid_t process);

} // namespace bench
