// Runs a handler again and again while it is enabled.
#pragma once

#include <functional>
#include <memory>

class QTimer;

namespace zvonivec {

class Timer {
public:
    /// Milliseconds from one tick to the next. A new timer is disabled.
    explicit Timer(int interval);
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer();

    [[nodiscard]] bool Enabled() const;
    void setEnabled(bool on);
    /// The next tick comes after a whole interval from now.
    [[nodiscard]] int Interval() const;
    void setInterval(int milliseconds);

    /// Raised at each tick; never while the handler of the last tick is still running.
    std::function<void()> Tick;

private:
    std::unique_ptr<QTimer> timer_;
};

} // namespace zvonivec
