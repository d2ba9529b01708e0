#include "platform/modDeklarace.h"

#include "platform/window_mover.h"
#include "platform/window_place.h"
#include "platform/window_region.h"
#include "platform/x11.h"

#include <QRegion>
#include <QWidget>
#include <QWindow>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>
#include <vector>
#include <xcb/shape.h>
#include <xcb/xcb.h>

namespace zvonivec::modDeklarace {

namespace {

/// Asks the window manager to set or clear a state of a window.
void askForState(xcb_connection_t* server, xcb_window_t window, xcb_atom_t state, bool on) {
    constexpr std::uint32_t fromProgram = 1; // not a pager
    x11::sendToManager(server, window, x11::atom(server, "_NET_WM_STATE"),
                       {on ? 1U : 0U, state, 0, fromProgram, 0});
}

/// Keeps a state of a window that is hidden until the window is shown.
class LaterState : public QObject {
public:
    LaterState(QWidget* window, xcb_connection_t* server, xcb_window_t number, xcb_atom_t state)
        : QObject(window) {
        setObjectName(NAME);
        x11::onMap(this, number, [this, server, number, state] {
            askForState(server, number, state, on);
            deleteLater();
        });
    }
    static LaterState* of(const QWidget& window) {
        return dynamic_cast<LaterState*>(
            window.findChild<QObject*>(NAME, Qt::FindDirectChildrenOnly));
    }

    bool on = false;

private:
    inline static const QString NAME = QStringLiteral("laterState");
};

/// Sets or clears a state of a window. Some window managers never clear a state that they have read
/// from a new window's property. So the state of a hidden window is asked for as soon as the window
/// is shown.
void setWindowState(xcb_connection_t* server, QWidget& widget, std::string_view name, bool on) {
    const auto window = static_cast<xcb_window_t>(widget.winId());
    const xcb_atom_t state = x11::atom(server, name);
    if (widget.isVisible()) {
        askForState(server, window, state, on);
    }
    // A window that has just been shown may not be managed yet.
    if (x11::property(server, window, x11::atom(server, "WM_STATE")).empty()) {
        LaterState* later = LaterState::of(widget);
        if (later == nullptr) {
            later = new LaterState(&widget, server, window, state);
        }
        later->on = on;
    }
}

void setShape(xcb_connection_t* server, xcb_window_t window, xcb_shape_sk_t kind,
              const QRegion& region) {
    std::vector<xcb_rectangle_t> rectangles;
    for (const QRect& part : region) {
        rectangles.push_back(
            {static_cast<std::int16_t>(part.x()), static_cast<std::int16_t>(part.y()),
             static_cast<std::uint16_t>(part.width()), static_cast<std::uint16_t>(part.height())});
    }
    xcb_shape_rectangles(server, XCB_SHAPE_SO_SET, kind, XCB_CLIP_ORDERING_UNSORTED, window, 0, 0,
                         static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
}

void clearShape(xcb_connection_t* server, xcb_window_t window, xcb_shape_sk_t kind) {
    xcb_shape_mask(server, XCB_SHAPE_SO_SET, kind, window, 0, 0, XCB_PIXMAP_NONE);
}

} // namespace

bool windowsMayBeTranslucent() {
    xcb_connection_t* server = x11::connection();
    return server == nullptr || x11::hasCompositor(server);
}

bool isTranslucent(const QWidget& window) {
    return window.testAttribute(Qt::WA_TranslucentBackground) && windowsMayBeTranslucent();
}

void shapeWindow(QWidget& window, const RegionData* region, bool redraw) {
    const double ratio = window.devicePixelRatioF();
    xcb_connection_t* server = x11::connection();
    if (region == nullptr) {
        window.clearMask();
    } else if (server == nullptr) {
        // Limits the pointer alone: the window paints nothing outside.
        window.windowHandle()->setMask(QRegion(region->at(1), region->rule));
    } else if (!window.testAttribute(Qt::WA_TranslucentBackground) && ratio == 1) {
        window.setMask(QRegion(region->at(1), region->rule));
    } else {
        // The toolkit's masks are in logical pixels, and they limit sight and pointer alike.
        window.clearMask();
        const auto number = static_cast<xcb_window_t>(window.winId());
        const QRegion shape(region->at(ratio), region->rule);
        if (isTranslucent(window)) {
            clearShape(server, number, XCB_SHAPE_SK_BOUNDING);
        } else {
            setShape(server, number, XCB_SHAPE_SK_BOUNDING, shape);
        }
        setShape(server, number, XCB_SHAPE_SK_INPUT, shape);
        xcb_flush(server);
    }
    if (redraw) {
        window.update();
    }
}

void watchTranslucency(QObject* receiver, std::function<void()> changed) {
    x11::onCompositorChange(receiver, std::move(changed));
}

void SetWindowPos(std::uintptr_t window, int insertAfter, int /*x*/, int /*y*/, int /*width*/,
                  int /*height*/, unsigned /*flags*/) {
    // The toolkit's own flag for this would hide the window and show it again.
    xcb_connection_t* server = x11::connection();
    QWidget* widget = QWidget::find(window);
    if (server != nullptr && widget != nullptr) {
        setWindowState(server, *widget, "_NET_WM_STATE_ABOVE", insertAfter == INSERT_TOPMOST);
    }
}

void ReleaseCapture() {
    // The move needs the capture, which delivers the release.
}

void SendMessageA(std::uintptr_t window, unsigned message, std::uintptr_t command) {
    QWidget* widget = QWidget::find(window);
    if (widget != nullptr && message == SYSTEM_COMMAND && command == MOVE_BY_POINTER) {
        WindowMover::start(*widget, placeOf(*widget).value_or(widget->pos()));
    }
}

namespace {

/// Binds a socket to a name in the abstract namespace. Returns whether the name was free.
bool bindMarker(int marker, const std::string& name) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (name.size() + 1 > sizeof(address.sun_path)) {
        return false;
    }
    std::memcpy(address.sun_path + 1, name.data(), name.size());
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    return bind(marker, reinterpret_cast<const sockaddr*>(&address), length) == 0;
}

} // namespace

void CreateMutexA(const std::string& name) {
    // A socket in the abstract namespace: every program can see it in /proc/net/unix, it lies in
    // no folder, and the kernel removes it with the process. A name belongs to one socket, so a
    // further copy adds its process number. The descriptor is kept until the process ends.
    const int marker = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (marker >= 0 && !bindMarker(marker, name) &&
        !bindMarker(marker, name + " #" + std::to_string(getpid()))) {
        close(marker);
    }
}

} // namespace zvonivec::modDeklarace
