// The duration of a piece of work, independent of other load on the machine.
#pragma once

#include <ctime>

namespace support {

/// How many times slower this build may be than the release build.
#if defined(__SANITIZE_THREAD__)
inline constexpr double SLOWNESS = 40;
#elif defined(__SANITIZE_ADDRESS__)
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
