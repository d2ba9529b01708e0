#include "platform/system_move_win32.h"

#include "platform/modDeklarace.h"
#include "platform/window_mover.h"

#include <QGuiApplication>
#include <QPointer>
#include <QWidget>
#include <array>
#include <utility>
#include <windows.h>
// After windows.h, which it needs.
#include <commctrl.h>

namespace zvonivec {

namespace {

struct Button {
    Qt::MouseButton name;
    int key;
    UINT release;
    WPARAM bit; ///< in the first argument of pointer messages
};

constexpr std::array buttons{
    Button{Qt::LeftButton, VK_LBUTTON, WM_LBUTTONUP, MK_LBUTTON},
    Button{Qt::RightButton, VK_RBUTTON, WM_RBUTTONUP, MK_RBUTTON},
    Button{Qt::MiddleButton, VK_MBUTTON, WM_MBUTTONUP, MK_MBUTTON},
};

WPARAM pressedButtons() {
    WPARAM bits = 0;
    for (const Button& button : buttons) {
        if (GetKeyState(button.key) < 0) {
            bits |= button.bit;
        }
    }
    return bits;
}

/// Where the pointer is, as the second argument of a window's pointer messages.
LPARAM pointerIn(HWND window) {
    POINT place{};
    GetCursorPos(&place);
    ScreenToClient(window, &place);
    return MAKELPARAM(place.x, place.y);
}

/// The move that is under way: there is one pointer. User-interface thread.
bool moving = false;

/// Runs when all buttons are up, and gives the loop the message that it ends with. Other timers of
/// the window are numbered from 1.
constexpr UINT_PTR endTimer = 0x5A76;

/// Between the system's loop and the window.
LRESULT CALLBACK duringMove(HWND window, UINT message, WPARAM first, LPARAM second, UINT_PTR /*id*/,
                            DWORD_PTR /*data*/) {
    constexpr WPARAM all = MK_LBUTTON | MK_RBUTTON | MK_MBUTTON;
    switch (message) {
    case WM_EXITSIZEMOVE:
        // The toolkit would tell of releases by itself, outside the window as such of its frame.
        return DefWindowProcW(window, message, first, second);
    case WM_RBUTTONUP:
    case WM_MBUTTONUP:
        if ((first & all) == 0) {
            // Before the moves that have come since: the timer waits until the pointer rests.
            PostMessageW(window, WM_LBUTTONUP, 0, pointerIn(window));
            SetTimer(window, endTimer, USER_TIMER_MINIMUM, nullptr);
        }
        return 0;
    case WM_LBUTTONUP: // only when a handler in the loop has let events pass: the loop didn't see
                       // it
        if ((first & all) == 0) {
            SetTimer(window, endTimer, USER_TIMER_MINIMUM, nullptr);
        }
        return 0;
    case WM_TIMER:
        if (first == endTimer) { // again and again, until it is the loop that takes it
            PostMessageW(window, WM_LBUTTONUP, 0, pointerIn(window));
            return 0;
        }
        break;
    default:
        break;
    }
    return DefSubclassProc(window, message, first, second);
}

void runLoop(HWND window) {
    constexpr UINT_PTR id = 1;
    SetWindowSubclass(window, duringMove, id, 0);
    SendMessageA(window, modDeklarace::SYSTEM_COMMAND, modDeklarace::MOVE_BY_POINTER, 0);
    KillTimer(window, endTimer);
    RemoveWindowSubclass(window, duringMove, id);
}

} // namespace

void moveBySystem(QWidget& window) {
    if (moving) {
        return;
    }
    const QPointer<QWidget> widget(&window);
    auto* const handle = reinterpret_cast<HWND>(window.winId());
    const QPoint start = window.pos();
    moving = true;
    WPARAM before = 0;
    WPARAM after = pressedButtons();
    do {
        before = after;
        if (before != 0) {
            runLoop(handle);
        }
        after = pressedButtons();
        // The left one is up, but not all: on it goes with the others.
    } while (after != 0 && (before & ~after) != 0);
    moving = false;

    if (!widget) {
        return;
    }
    if (after != 0) {
        SetCapture(handle); // the releases shall come here
    }
    const bool endedByKey = GetKeyState(VK_ESCAPE) < 0 || GetKeyState(VK_RETURN) < 0;
    const bool hasRefused = after != 0 && widget->pos() == start && !endedByKey;
    if (before == 0 || hasRefused) {
        WindowMover::start(*widget);
        return;
    }
    // One after the other, as they would have come.
    WPARAM pressed = 0;
    for (const Button& button : buttons) {
        pressed |= QGuiApplication::mouseButtons().testFlag(button.name) ? button.bit : 0;
    }
    for (const Button& button : buttons) {
        if ((pressed & button.bit) != 0 && (after & button.bit) == 0) {
            pressed &= ~button.bit;
            PostMessageW(handle, button.release, pressed, pointerIn(handle));
        }
    }
}

} // namespace zvonivec
