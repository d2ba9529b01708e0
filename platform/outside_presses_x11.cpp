#include "platform/outside_presses.h"

#include "platform/window_place.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QObject>
#include <QWidget>
#include <cstdlib>
#include <utility>
#include <xcb/xcb.h>
#include <xcb/xinput.h>

namespace zvonivec {

namespace {

/// Buttons 4 to 7 are the wheel.
constexpr std::uint32_t LAST_REAL_BUTTON = 3;

xcb_connection_t* connection() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr ? x11->connection() : nullptr;
}

/// Selects raw events on the root window. The X server then reports presses and touches as the
/// devices send them, whichever window they are for and whoever has grabbed the pointer.
void ask(xcb_connection_t* server, std::uint32_t events) {
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(server)).data->root;
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t events;
    } mask{{.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1}, events};
    xcb_discard_reply(server,
                      xcb_input_xi_select_events_checked(server, root, 1, &mask.head).sequence);
    xcb_flush(server);
}

} // namespace

struct OutsidePresses::Watch : QAbstractNativeEventFilter {
    bool nativeEventFilter(const QByteArray& /*type*/, void* message,
                           qintptr* /*result*/) override {
        const auto* event = static_cast<const xcb_ge_generic_event_t*>(message);
        if ((event->response_type & 0x7F) != XCB_GE_GENERIC || event->extension != extension) {
            return false;
        }
        if (event->event_type == XCB_INPUT_RAW_BUTTON_PRESS) {
            const auto* press = reinterpret_cast<const xcb_input_raw_button_press_event_t*>(event);
            if (press->detail <= LAST_REAL_BUTTON) {
                look();
            }
        } else if (event->event_type == XCB_INPUT_RAW_TOUCH_BEGIN) {
            look();
        }
        return false;
    }

    /// Posts the call when the pointer is outside the window. A raw event has no place, so the
    /// pointer's present place is used. The call waits until the event queue has been read.
    void look() {
        const QWidget* inside = QWidget::find(window);
        const auto corner = inside != nullptr ? placeOf(*inside) : std::nullopt;
        if (!corner || !QRectF(*corner, inside->size()).contains(pointerPlace())) {
            QMetaObject::invokeMethod(&receiver, pressed, Qt::QueuedConnection);
        }
    }

    std::uintptr_t window = 0;
    std::function<void()> pressed;
    std::uint8_t extension = 0;
    QObject receiver; ///< context of the posted calls; calls that still wait are dropped with it
};

OutsidePresses::OutsidePresses(std::uintptr_t window, std::function<void()> pressed)
    : watch_(std::make_unique<Watch>()) {
    watch_->window = window;
    watch_->pressed = std::move(pressed);
    xcb_connection_t* server = connection();
    if (server == nullptr) {
        return;
    }
    const xcb_query_extension_reply_t* input = xcb_get_extension_data(server, &xcb_input_id);
    if (input == nullptr || input->present == 0) {
        return;
    }
    watch_->extension = input->major_opcode;
    qGuiApp->installNativeEventFilter(watch_.get());
    ask(server, XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_TOUCH_BEGIN);
}

OutsidePresses::~OutsidePresses() {
    if (watch_->extension != 0) {
        ask(connection(), 0);
        qGuiApp->removeNativeEventFilter(watch_.get());
    }
}

} // namespace zvonivec
