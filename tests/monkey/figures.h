// What a process holds, sample by sample, and whether it grows.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace monkey {

/// What a process holds at a moment.
struct Holdings {
    double kilobytes = 0; ///< private memory that was written to
    double threads = 0;
    double descriptors = 0; ///< open files, sockets and the like
};

/// Reads what a process holds. All is 0 when it has ended.
Holdings holdingsOf(pid_t process);

/// How fast a figure grows with the number of actions. Each life of a program has a level of its
/// own; the growth is the same in all. Rules
///  * Samples of a life's beginning, when caches fill, don't belong here.
class Growth {
public:
    void beginLife() { lives_.emplace_back(); }
    void add(double actions, double value) { lives_.back().push_back({actions, value}); }

    /// Both for a thousand actions; 0 with fewer than three samples.
    struct Slope {
        double value = 0;
        double error = 0; ///< the standard error
    };
    [[nodiscard]] Slope slope() const;
    [[nodiscard]] double largest() const;

private:
    struct Sample {
        double actions;
        double value;
    };
    std::vector<std::vector<Sample>> lives_;
};

} // namespace monkey
