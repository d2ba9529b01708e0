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

    /// Raised at each tick; never while the handler of the last tick is still running.
    std::function<void()> Tick;

private:
    std::unique_ptr<QTimer> timer_;
};

} // namespace zvonivec
