// The menu is shown without being activated, so the main window stays active. A press on another
// program's window deactivates the main window, which the form notices. So only presses on the
// program's own windows are watched here.

#include "platform/outside_presses.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <QObject>
#include <utility>
#include <windows.h>

namespace zvonivec {

struct OutsidePresses::Watch : QAbstractNativeEventFilter {
    bool nativeEventFilter(const QByteArray& /*type*/, void* message,
                           qintptr* /*result*/) override {
        const auto& received = *static_cast<const MSG*>(message);
        switch (received.message) {
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
        case WM_RBUTTONDOWN:
        case WM_RBUTTONDBLCLK:
        case WM_MBUTTONDOWN:
        case WM_MBUTTONDBLCLK:
        case WM_POINTERDOWN:
            if (received.hwnd != window) {
                QMetaObject::invokeMethod(&receiver, pressed, Qt::QueuedConnection);
            }
            break;
        default:
            break;
        }
        return false;
    }

    HWND window = nullptr;
    std::function<void()> pressed;
    QObject receiver; ///< context of the posted calls; calls that still wait are dropped with it
};

OutsidePresses::OutsidePresses(std::uintptr_t window, std::function<void()> pressed)
    : watch_(std::make_unique<Watch>()) {
    watch_->window = reinterpret_cast<HWND>(window);
    watch_->pressed = std::move(pressed);
    QCoreApplication::instance()->installNativeEventFilter(watch_.get());
}

OutsidePresses::~OutsidePresses() {
    QCoreApplication::instance()->removeNativeEventFilter(watch_.get());
}

} // namespace zvonivec
