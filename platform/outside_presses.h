// Presses of pointer buttons outside a menu.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace zvonivec {

/// Reports presses of a button anywhere outside a window: on another window of this program, on
/// another program's window or on the desktop. Other programs still receive the press.
///
/// The function runs on the user-interface thread, soon after the press, and never after the object
/// has gone. Some systems, such as Windows and Wayland, deactivate the program when another
/// program's window is pressed. Such a press needn't be reported there.
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
