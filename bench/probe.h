// What a running process costs, asked of the kernel.
#pragma once

#include <map>
#include <set>
#include <string>
#include <sys/types.h>

namespace bench {

/// Counters of a process and all its threads, those that have ended too where the kernel adds them.
struct Cost {
    double processor = 0; ///< seconds on a processor, to the nanosecond
    double wakeUps = 0;   ///< times that one of its threads went to sleep
};

/// Zeros for a process that isn't there.
Cost costOf(pid_t process);

/// Seconds on a processor of the threads that live now, by their names: the main thread has the
/// program's, and so have those that were given none.
std::map<std::string, double> threadsOf(pid_t process);

struct Memory {
    double proportional = 0; ///< bytes, each shared page divided by those who share it
    double ownWritten = 0;   ///< bytes that this process alone has, and has written
};

Memory memoryOf(pid_t process);

/// The shared libraries that are mapped, plugins too.
std::set<std::string> librariesOf(pid_t process);

} // namespace bench
