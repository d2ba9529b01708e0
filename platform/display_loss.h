// The loss of the display server.
#pragma once

#include <functional>

namespace zvonivec {

/// Runs a function when the display server has gone. The toolkit then ends the process, or its
/// event loop, and the process ends with that: no window is closed and no event delivered any more.
/// The function runs last of all, on the user-interface thread, and must not touch the display.
/// Only one object may exist at a time.
class DisplayLoss {
public:
    explicit DisplayLoss(std::function<void()> lastAction);
    DisplayLoss(const DisplayLoss&) = delete;
    DisplayLoss& operator=(const DisplayLoss&) = delete;
    ~DisplayLoss();
};

} // namespace zvonivec
