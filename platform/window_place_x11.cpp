// The toolkit brings the X server's device pixels to logical pixels screen by screen: a screen's
// upper left corner is at the same place in both, and the rest of the screen is divided by its
// scale factor.

#include "platform/window_place.h"

#include "platform/x11.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <xcb/xinput.h>

namespace zvonivec {

namespace {

QRectF deviceArea(const QScreen& screen) {
    const QRect area = screen.geometry();
    return {area.topLeft(), QSizeF(area.size()) * screen.devicePixelRatio()};
}

/// Returns the screen that a place belongs to. A place outside all screens belongs to the primary
/// one.
template<class Area>
const QScreen* screenWith(QPointF place, Area area) {
    const auto screens = QGuiApplication::screens();
    const auto found = std::ranges::find_if(screens, [&](const QScreen* screen) {
        const QRectF all = area(*screen);
        return place.x() >= all.left() && place.x() < all.right() && place.y() >= all.top() &&
               place.y() < all.bottom();
    });
    return found != screens.end() ? *found : QGuiApplication::primaryScreen();
}

QPointF toLogical(QPoint device) {
    const QScreen* screen = screenWith(device, deviceArea);
    if (screen == nullptr) {
        return device;
    }
    const QPointF origin = screen->geometry().topLeft();
    return (device - origin) / screen->devicePixelRatio() + origin;
}

QPoint toDevice(QPointF logical) {
    const QScreen* screen =
        screenWith(logical, [](const QScreen& candidate) { return QRectF(candidate.geometry()); });
    if (screen == nullptr) {
        return logical.toPoint();
    }
    const QPointF origin = screen->geometry().topLeft();
    const QPointF device = (logical - origin) * screen->devicePixelRatio() + origin;
    static constexpr double limit = 32000; // coordinates in X have 16 bits
    const auto whole = [](double value) {
        return static_cast<int>(std::floor(std::clamp(value, -limit, limit) + 0.5));
    };
    return {whole(device.x()), whole(device.y())};
}

xcb_window_t numberOf(const QWidget& window) {
    return static_cast<xcb_window_t>(window.internalWinId());
}

/// The state by which a window manager is asked to minimise a window, and by which it says so.
constexpr std::uint32_t ICONIC = 3;

bool isViewable(xcb_connection_t* server, xcb_window_t window) {
    const x11::XcbReply<xcb_get_window_attributes_reply_t> reply(
        xcb_get_window_attributes_reply(server, xcb_get_window_attributes(server, window), nullptr),
        &std::free);
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

/// Whether a window manager is at work: its window, which the root names, names itself.
bool hasWindowManager(xcb_connection_t* server) {
    const xcb_atom_t check = x11::atom(server, "_NET_SUPPORTING_WM_CHECK");
    const auto named = x11::property(server, x11::root(server), check);
    return !named.empty() && x11::property(server, named.front(), check) == named;
}

} // namespace

bool placesAreReported() {
    return x11::connection() != nullptr;
}

std::optional<QPointF> placeOf(const QWidget& window) {
    xcb_connection_t* server = x11::connection();
    if (server == nullptr || numberOf(window) == XCB_WINDOW_NONE) {
        return std::nullopt;
    }
    const x11::XcbReply<xcb_translate_coordinates_reply_t> reply(
        xcb_translate_coordinates_reply(
            server, xcb_translate_coordinates(server, numberOf(window), x11::root(server), 0, 0),
            nullptr),
        &std::free);
    const auto place = reply ? std::optional(QPoint(reply->dst_x, reply->dst_y))
                             : x11::lastPlace(numberOf(window)); // the server is gone
    return place ? std::optional(toLogical(*place)) : std::nullopt;
}

void moveWindow(QWidget& window, QPointF place) {
    xcb_connection_t* server = x11::connection();
    const QPoint device = toDevice(place);
    if (server == nullptr || !window.isVisible()) {
        window.move(toLogical(device).toPoint());
    }
    if (server != nullptr) {
        // Not through the toolkit, which knows whole logical pixels only and asks for no place that
        // it believes the window to have.
        window.winId();
        const std::array values{static_cast<std::uint32_t>(device.x()),
                                static_cast<std::uint32_t>(device.y())};
        xcb_configure_window(server, numberOf(window), XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
                             values.data());
        xcb_flush(server);
        x11::expectPlace(numberOf(window), device);
    }
}

void insistOnPlace(QWidget& window, QPointF place) {
    xcb_connection_t* server = x11::connection();
    if (server == nullptr || numberOf(window) == XCB_WINDOW_NONE) {
        return;
    }
    constexpr std::uint32_t staticGravity = 10; // the place is the window's, not its frame's
    constexpr std::uint32_t hasX = 1U << 8U;
    constexpr std::uint32_t hasY = 1U << 9U;
    constexpr std::uint32_t fromUser = 2U << 12U;
    const QPoint device = toDevice(place);
    x11::sendToManager(server, numberOf(window), x11::atom(server, "_NET_MOVERESIZE_WINDOW"),
                       {staticGravity | hasX | hasY | fromUser,
                        static_cast<std::uint32_t>(device.x()),
                        static_cast<std::uint32_t>(device.y()), 0, 0});
}

QPointF nearestPlace(QPointF place) {
    return toLogical(toDevice(place));
}

QPointF pointerPlace() {
    xcb_connection_t* server = x11::connection();
    const auto pointer = server != nullptr ? x11::pointer(server) : std::nullopt;
    return pointer ? toLogical(pointer->place) : QPointF(QCursor::pos());
}

std::optional<QPointF> pressPlace() {
    const auto press = x11::lastPress();
    return press ? std::optional(toLogical(press->place)) : std::nullopt;
}

unsigned placeReports() {
    return x11::configureEvents();
}

bool handMoveOver(QWidget& window, QPointF pressed) {
    xcb_connection_t* server = x11::connection();
    const auto press = x11::lastPress();
    if (server == nullptr || !press) {
        return false;
    }
    const xcb_atom_t message = x11::atom(server, "_NET_WM_MOVERESIZE");
    const auto supported =
        x11::property(server, x11::root(server), x11::atom(server, "_NET_SUPPORTED"));
    if (std::ranges::find(supported, message) == supported.end()) {
        return false;
    }
    // The press has given the pointer to this program.
    xcb_ungrab_pointer(server, XCB_CURRENT_TIME);
    xcb_discard_reply(
        server,
        xcb_input_xi_ungrab_device_checked(server, XCB_CURRENT_TIME, press->device).sequence);
    constexpr std::uint32_t move = 8;
    constexpr std::uint32_t fromProgram = 1;
    const QPoint device = toDevice(pressed);
    x11::sendToManager(server, numberOf(window), message,
                       {static_cast<std::uint32_t>(device.x()),
                        static_cast<std::uint32_t>(device.y()), move, press->button, fromProgram});
    return true;
}

void endHandedMove(QWidget& window) {
    xcb_connection_t* server = x11::connection();
    if (server != nullptr) {
        constexpr std::uint32_t cancel = 11;
        x11::sendToManager(server, numberOf(window), x11::atom(server, "_NET_WM_MOVERESIZE"),
                           {0, 0, cancel, 0, 1});
    }
}

bool pointerIsPressed() {
    xcb_connection_t* server = x11::connection();
    const auto pointer = server != nullptr ? x11::pointer(server) : std::nullopt;
    return pointer && pointer->pressed;
}

void watchCover(QWidget& window, std::function<void(bool)> function) {
    if (x11::connection() != nullptr) {
        x11::onCover(&window, numberOf(window), std::move(function));
    }
}

void minimise(QWidget& window) {
    xcb_connection_t* server = x11::connection();
    if (server == nullptr) {
        window.showMinimized();
        return;
    }
    // The toolkit would count the window as minimised at once. This way it waits for the window
    // manager.
    x11::sendToManager(server, numberOf(window), x11::atom(server, "WM_CHANGE_STATE"),
                       {ICONIC, 0, 0, 0, 0});
}

bool isMinimised(const QWidget& window) {
    xcb_connection_t* server = x11::connection();
    if (server == nullptr || numberOf(window) == XCB_WINDOW_NONE) {
        return window.isMinimized();
    }
    const auto state = x11::property(server, numberOf(window), x11::atom(server, "WM_STATE"));
    // Some window managers leave a minimised window viewable, for its live picture.
    return !state.empty() && state.front() == ICONIC &&
           (hasWindowManager(server) || !isViewable(server, numberOf(window)));
}

} // namespace zvonivec
