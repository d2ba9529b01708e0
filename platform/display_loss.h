// The end of the display server.
#pragma once

#include <functional>

namespace zvonivec {

/// When the display server goes, the toolkit ends the process at once: no window is closed, no
/// event comes any more. While this lives, a function runs then, on the user-interface thread, as
/// the last that is done; it must not touch the display. One object at a time.
class DisplayLoss {
public:
    explicit DisplayLoss(std::function<void()> lastDeed);
    DisplayLoss(const DisplayLoss&) = delete;
    DisplayLoss& operator=(const DisplayLoss&) = delete;
    ~DisplayLoss();
};

} // namespace zvonivec
