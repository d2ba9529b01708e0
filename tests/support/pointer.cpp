#include "tests/support/pointer.h"

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <cstddef>
#include <string>
#include <vector>

namespace support {

void Pointer::moveTo(Point place) const {
    XTestFakeMotionEvent(connection_, -1, place.x, place.y, CurrentTime);
    XSync(connection_, False);
}

void Pointer::press(int button) const {
    XTestFakeButtonEvent(connection_, static_cast<unsigned>(button), True, CurrentTime);
    XSync(connection_, False);
    display_->waitForWindowManager();
}

void Pointer::release(int button) const {
    XTestFakeButtonEvent(connection_, static_cast<unsigned>(button), False, CurrentTime);
    XSync(connection_, False);
    display_->waitForWindowManager();
}

void Pointer::click(Point place, int button) const {
    moveTo(place);
    press(button);
    release(button);
    waitUntilFree();
}

void Pointer::waitUntilFree() const {
    const auto isFree = [this] {
        const int grabbed = XGrabPointer(connection_, DefaultRootWindow(connection_), True, 0,
                                         GrabModeAsync, GrabModeAsync, None, None, CurrentTime);
        if (grabbed == GrabSuccess) {
            XUngrabPointer(connection_, CurrentTime);
        }
        XSync(connection_, False);
        return grabbed == GrabSuccess;
    };
    // An open menu may hold the pointer for good, so this doesn't wait long.
    waitUntil(isFree, std::chrono::milliseconds(300));
}

namespace {

struct Key {
    unsigned code = 0;
    bool shifted = false;
};

/// The server's keyboard map: for each key its symbols without and with Shift.
class KeyMap {
public:
    explicit KeyMap(::Display* connection) : connection_(connection) {
        XDisplayKeycodes(connection, &first_, &last_);
        symbols_ = XGetKeyboardMapping(connection, static_cast<KeyCode>(first_), last_ - first_ + 1,
                                       &perKey_);
    }
    KeyMap(const KeyMap&) = delete;
    KeyMap& operator=(const KeyMap&) = delete;
    ~KeyMap() { XFree(symbols_); }

    [[nodiscard]] Key find(KeySym symbol) const {
        for (int code = first_; code <= last_; ++code) {
            for (int level = 0; level < 2 && level < perKey_; ++level) {
                if (at(code, level) == symbol) {
                    return {static_cast<unsigned>(code), level == 1};
                }
            }
        }
        return {};
    }

    /// Assigns a symbol to a key without symbols.
    void add(KeySym symbol) {
        for (int code = last_; code >= first_; --code) {
            bool isFree = true;
            for (int level = 0; level < perKey_; ++level) {
                isFree = isFree && at(code, level) == NoSymbol;
            }
            if (isFree) {
                KeySym both[] = {symbol, symbol};
                XChangeKeyboardMapping(connection_, code, 2, both, 1);
                symbols_[static_cast<std::ptrdiff_t>(code - first_) * perKey_] = symbol;
                return;
            }
        }
    }

private:
    [[nodiscard]] KeySym at(int code, int level) const {
        return symbols_[(code - first_) * perKey_ + level];
    }

    ::Display* connection_;
    int first_ = 0;
    int last_ = 0;
    int perKey_ = 0;
    KeySym* symbols_ = nullptr;
};

std::vector<KeySym> symbolsOf(std::string_view utf8) {
    std::vector<KeySym> symbols;
    for (std::size_t i = 0; i < utf8.size();) {
        const auto lead = static_cast<unsigned char>(utf8[i]);
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        static constexpr unsigned masks[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
        KeySym code = lead & masks[length];
        for (std::size_t k = 1; k < length && i + k < utf8.size(); ++k) {
            code = (code << 6) | (static_cast<unsigned char>(utf8[i + k]) & 0x3FU);
        }
        // Keysyms of Latin-1 equal the characters. Those of other characters begin at this offset.
        symbols.push_back(code < 0x100 ? code : code + 0x01000000);
        i += length;
    }
    return symbols;
}

void send(::Display* connection, unsigned code, bool down) {
    XTestFakeKeyEvent(connection, code, down ? True : False, CurrentTime);
}

void strike(::Display* connection, const Key& key) {
    const unsigned shift = XKeysymToKeycode(connection, XK_Shift_L);
    if (key.shifted) {
        send(connection, shift, true);
    }
    send(connection, key.code, true);
    send(connection, key.code, false);
    if (key.shifted) {
        send(connection, shift, false);
    }
}

} // namespace

void Keyboard::press(const char* name) const {
    send(connection_, XKeysymToKeycode(connection_, XStringToKeysym(name)), true);
    XSync(connection_, False);
}

void Keyboard::release(const char* name) const {
    send(connection_, XKeysymToKeycode(connection_, XStringToKeysym(name)), false);
    XSync(connection_, False);
}

void Keyboard::key(const char* name, const char* held) const {
    const std::string modifier = held == nullptr ? "" : std::string(held) + "_L";
    if (held != nullptr) {
        press(modifier.c_str());
    }
    press(name);
    release(name);
    if (held != nullptr) {
        release(modifier.c_str());
    }
}

void Keyboard::type(std::string_view utf8) const {
    const std::vector<KeySym> symbols = symbolsOf(utf8);
    KeyMap map(connection_);
    // All new keys are added first, so that a client that reads the changed map late still finds
    // each of them.
    for (const KeySym symbol : symbols) {
        if (map.find(symbol).code == 0) {
            map.add(symbol);
        }
    }
    XSync(connection_, False);
    for (const KeySym symbol : symbols) {
        strike(connection_, map.find(symbol));
    }
    XSync(connection_, False);
}

} // namespace support
