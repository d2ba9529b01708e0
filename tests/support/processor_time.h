// How long a piece of work takes, whatever else the machine is doing.
#pragma once

#include <ctime>

namespace support {

/// How much slower than the release build this build may be.
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
inline constexpr double SLOWNESS = 20;
#elif !defined(__OPTIMIZE__)
inline constexpr double SLOWNESS = 5;
#else
inline constexpr double SLOWNESS = 1;
#endif

/// Processor time of this process, in seconds, since the object was made, divided by SLOWNESS.
class ProcessorTime {
public:
    [[nodiscard]] double seconds() const {
        return static_cast<double>(std::clock() - begin_) / CLOCKS_PER_SEC / SLOWNESS;
    }

private:
    std::clock_t begin_ = std::clock();
};

} // namespace support
