// Presses of the pointer's buttons beside a menu.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace zvonivec {

/// Tells of a press of a button anywhere but in one window: on another window of the program or of
/// any other, or on the desktop. The press itself goes where it goes, nothing is taken from
/// anybody.
///
/// The function runs once, on the user-interface thread, soon after the press, and never after the
/// object has gone. Where the system takes the activation from the program with a press on
/// another's window, as Windows and Wayland do, that need not be told.
class OutsidePresses {
public:
    OutsidePresses(std::uintptr_t window, std::function<void()> pressed);
    OutsidePresses(const OutsidePresses&) = delete;
    OutsidePresses& operator=(const OutsidePresses&) = delete;
    ~OutsidePresses();

private:
    struct Watch;
    std::unique_ptr<Watch> watch_;
};

} // namespace zvonivec
