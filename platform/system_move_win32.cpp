#include "platform/system_move_win32.h"

#include "platform/modDeklarace.h"
#include "platform/window_mover.h"

#include <QGuiApplication>
#include <QPointer>
#include <QWidget>
#include <array>
#include <utility>
#include <windows.h>
// Needs windows.h before it.
#include <commctrl.h>

namespace zvonivec {

namespace {

struct Button {
    Qt::MouseButton name;
    int key;
    UINT release;
    WPARAM bit; ///< in the first argument of pointer messages
};

constexpr std::array BUTTONS{
    Button{Qt::LeftButton, VK_LBUTTON, WM_LBUTTONUP, MK_LBUTTON},
    Button{Qt::RightButton, VK_RBUTTON, WM_RBUTTONUP, MK_RBUTTON},
    Button{Qt::MiddleButton, VK_MBUTTON, WM_MBUTTONUP, MK_MBUTTON},
};

WPARAM pressedButtons() {
    WPARAM bits = 0;
    for (const Button& button : BUTTONS) {
        if (GetKeyState(button.key) < 0) {
            bits |= button.bit;
        }
    }
    return bits;
}

/// Returns the pointer's place as the second argument of a window's pointer messages.
LPARAM pointerIn(HWND window) {
    POINT place{};
    GetCursorPos(&place);
    ScreenToClient(window, &place);
    return MAKELPARAM(place.x, place.y);
}

/// Whether a move is under way. There is only one pointer. User-interface thread.
bool moving = false;

/// Timer that sends the loop the message which ends it, when all buttons are released. Other timers
/// of the window have numbers from 1 on.
constexpr UINT_PTR END_TIMER = 0x5A76;

/// Handles the window's messages while the system's move loop runs.
LRESULT CALLBACK duringMove(HWND window, UINT message, WPARAM first, LPARAM second, UINT_PTR /*id*/,
                            DWORD_PTR /*data*/) {
    constexpr WPARAM all = MK_LBUTTON | MK_RBUTTON | MK_MBUTTON;
    switch (message) {
    case WM_EXITSIZEMOVE:
        // Kept from the toolkit, which would report releases itself, and outside the window as
        // releases on its frame.
        return DefWindowProcW(window, message, first, second);
    case WM_RBUTTONUP:
    case WM_MBUTTONUP:
        if ((first & all) == 0) {
            // A posted message overtakes the pointer moves that wait. The timer comes when the
            // pointer rests.
            PostMessageW(window, WM_LBUTTONUP, 0, pointerIn(window));
            SetTimer(window, END_TIMER, USER_TIMER_MINIMUM, nullptr);
        }
        return 0;
    case WM_LBUTTONUP:
        // Comes here only when a handler in the loop has processed events, and the loop has missed
        // it.
        if ((first & all) == 0) {
            SetTimer(window, END_TIMER, USER_TIMER_MINIMUM, nullptr);
        }
        return 0;
    case WM_TIMER:
        if (first == END_TIMER) { // repeats until the loop takes the message
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
    KillTimer(window, END_TIMER);
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
        // The loop has ended with the left button, but another button is still pressed and goes on
        // with the move.
    } while (after != 0 && (before & ~after) != 0);
    moving = false;

    if (!widget) {
        return;
    }
    if (after != 0) {
        SetCapture(handle); // so that the window gets the releases
    }
    const bool endedByKey = GetKeyState(VK_ESCAPE) < 0 || GetKeyState(VK_RETURN) < 0;
    // The system has refused, or given up: some go on for the left button alone.
    const bool endedEarly = after != 0 && !endedByKey;
    if (before == 0 || endedEarly) {
        WindowMover::start(*widget, start);
        return;
    }
    // One message for each button, as the system would have sent them.
    WPARAM pressed = 0;
    for (const Button& button : BUTTONS) {
        pressed |= QGuiApplication::mouseButtons().testFlag(button.name) ? button.bit : 0;
    }
    for (const Button& button : BUTTONS) {
        if ((pressed & button.bit) != 0 && (after & button.bit) == 0) {
            pressed &= ~button.bit;
            PostMessageW(handle, button.release, pressed, pointerIn(handle));
        }
    }
}

} // namespace zvonivec
