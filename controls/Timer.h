// A timer that raises an event at regular intervals.
#pragma once

#include <functional>
#include <memory>

class QTimer;

namespace zvonivec {

class Timer {
public:
    /// Creates a disabled timer. The interval is in milliseconds.
    explicit Timer(int interval);
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer();

    [[nodiscard]] bool Enabled() const;
    void setEnabled(bool on);
    /// Milliseconds from one tick to the next. After a new interval has been set, the next tick
    /// comes when all of it has passed. An interval below 1 is refused.
    [[nodiscard]] int Interval() const;
    void setInterval(int milliseconds);

    /// Raised at each tick. While the handler of an earlier tick is still running, it is raised
    /// only in the event loop of a box or dialog that has opened meanwhile.
    std::function<void()> Tick;

private:
    void tick();

    std::unique_ptr<QTimer> timer_;
    int tickingIn_ = 0; ///< number of nested event loops at the innermost running tick, 0: none
};

} // namespace zvonivec
