// The user's hands: pointer and keyboard events that come from the X server itself, so that clients
// and window managers can't tell them from a real user's.
#pragma once

#include "tests/support/display.h"

#include <string_view>

namespace support {

/// Rules
///  * Each call returns when the server has taken the event, not when a client has acted on it:
///  wait
///    for what should be seen.
///  * Buttons: 1 left, 2 middle, 3 right, as X numbers them.
class Pointer {
public:
    explicit Pointer(const Display& display) : connection_(display.connection()) {}

    void moveTo(Point place) const;
    void press(int button = 1) const;
    void release(int button = 1) const;
    /// Moves there, presses and releases, and waits until nobody holds the pointer: a window
    /// manager that takes a press to raise the window holds it for a moment, and loses what comes
    /// meanwhile faster than any hand moves.
    void click(Point place, int button = 1) const;

private:
    void waitUntilFree() const;

    _XDisplay* connection_;
};

/// Rules
///  * Keys go to the window that has the keyboard's focus.
///  * A character that no key has gets a key of its own for as long as the display lives; about a
///    hundred different ones are possible.
class Keyboard {
public:
    explicit Keyboard(const Display& display) : connection_(display.connection()) {}

    /// A key by its X name, such as "Return", "Escape", "Tab", "F10"; with "Alt", "Control" or
    /// "Shift" held when they are given as the second name.
    void key(const char* name, const char* held = nullptr) const;
    void type(std::string_view utf8) const;

    void press(const char* name) const;
    void release(const char* name) const;

private:
    _XDisplay* connection_;
};

} // namespace support
