// The pointer and the keyboard. Their events come from the X server itself, so clients and window
// managers can't distinguish them from a real user's.
#pragma once

#include "tests/support/display.h"

#include <string_view>

namespace support {

/// Rules
///  * Each call returns when the server has accepted the event, and the window manager has served
///  it
///    if it is a button's: a window manager that gives a pressed window the keyboard or raises it
///    may hold the pointer for a moment, and would lose what comes faster than from any hand. The
///    client may react later, so tests wait for the visible result.
///  * Buttons have X's numbers: 1 left, 2 middle, 3 right.
class Pointer {
public:
    explicit Pointer(const Display& display)
        : display_(&display), connection_(display.connection()) {}

    void moveTo(Point place) const;
    void press(int button = 1) const;
    void release(int button = 1) const;
    /// Moves, presses and releases, and then waits until no client holds the pointer.
    void click(Point place, int button = 1) const;

private:
    void waitUntilFree() const;

    const Display* display_;
    _XDisplay* connection_;
};

/// Rules
///  * Keys go to the window with the keyboard focus.
///  * A character without a key gets a key for the lifetime of the display. There is room for about
///    a hundred characters.
class Keyboard {
public:
    explicit Keyboard(const Display& display) : connection_(display.connection()) {}

    /// Presses and releases a key by its X name, such as "Return", "Escape", "Tab" or "F10". The
    /// second name, "Alt", "Control" or "Shift", is held meanwhile.
    void key(const char* name, const char* held = nullptr) const;
    void type(std::string_view utf8) const;

    void press(const char* name) const;
    void release(const char* name) const;

private:
    _XDisplay* connection_;
};

} // namespace support
