#include "platform/modDeklarace.h"

#include "platform/window_mover.h"
#include "platform/window_region.h"

#include <QGuiApplication>
#include <QRegion>
#include <QWidget>
#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>
#include <xcb/shape.h>
#include <xcb/xcb.h>

namespace zvonivec::modDeklarace {

namespace {

/// A reply that xcb has allocated and that std::free releases.
template<class Reply>
using XcbReply = std::unique_ptr<Reply, decltype(&std::free)>;

xcb_atom_t atom(xcb_connection_t* server, std::string_view name) {
    const XcbReply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(
            server,
            xcb_intern_atom(server, 0, static_cast<std::uint16_t>(name.size()), name.data()),
            nullptr),
        &std::free);
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

/// Returns the atoms of a property that is a list of atoms or begins with an atom.
std::vector<xcb_atom_t> atoms(xcb_connection_t* server, xcb_window_t window, xcb_atom_t property) {
    constexpr std::uint32_t most = 64;
    const XcbReply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(
            server, xcb_get_property(server, 0, window, property, XCB_ATOM_ANY, 0, most), nullptr),
        &std::free);
    if (!reply || reply->format != 32) {
        return {};
    }
    const auto* first = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

/// Sets or clears a state of a window. A window manager reads the states from the property when it
/// begins to manage the window. From then on it alone writes the property, and a message asks it
/// to.
void setWindowState(xcb_connection_t* server, xcb_window_t window, std::string_view name, bool on) {
    const xcb_atom_t states = atom(server, "_NET_WM_STATE");
    const xcb_atom_t state = atom(server, name);
    if (atoms(server, window, atom(server, "WM_STATE")).empty()) {
        std::vector<xcb_atom_t> all = atoms(server, window, states);
        std::erase(all, state);
        if (on) {
            all.push_back(state);
        }
        xcb_change_property(server, XCB_PROP_MODE_REPLACE, window, states, XCB_ATOM_ATOM, 32,
                            static_cast<std::uint32_t>(all.size()), all.data());
    }
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = states;
    message.data.data32[0] = on ? 1 : 0;
    message.data.data32[1] = state;
    message.data.data32[3] = 1; // the source is a program, not a pager
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(server)).data->root;
    xcb_send_event(server, 0, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(server);
}

} // namespace

void shapeWindow(QWidget& window, const RegionData* region, bool redraw) {
    // The toolkit's masks are in logical pixels. Finer masks go directly to the X server.
    const double ratio = window.devicePixelRatioF();
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (region == nullptr) {
        window.clearMask();
    } else if (ratio == 1 || x11 == nullptr || x11->connection() == nullptr) {
        window.setMask(QRegion(region->at(1), region->rule));
    } else {
        window.clearMask();
        std::vector<xcb_rectangle_t> rectangles;
        for (const QRect& part : QRegion(region->at(ratio), region->rule)) {
            rectangles.push_back({static_cast<std::int16_t>(part.x()),
                                  static_cast<std::int16_t>(part.y()),
                                  static_cast<std::uint16_t>(part.width()),
                                  static_cast<std::uint16_t>(part.height())});
        }
        xcb_shape_rectangles(x11->connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                             XCB_CLIP_ORDERING_UNSORTED, static_cast<xcb_window_t>(window.winId()),
                             0, 0, static_cast<std::uint32_t>(rectangles.size()),
                             rectangles.data());
        xcb_flush(x11->connection());
    }
    if (redraw) {
        window.update();
    }
}

void SetWindowPos(std::uintptr_t window, int insertAfter, int /*x*/, int /*y*/, int /*width*/,
                  int /*height*/, unsigned /*flags*/) {
    // The toolkit's own flag for this would hide the window and show it again.
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 != nullptr && x11->connection() != nullptr) {
        setWindowState(x11->connection(), static_cast<xcb_window_t>(window), "_NET_WM_STATE_ABOVE",
                       insertAfter == INSERT_TOPMOST);
    }
}

void ReleaseCapture() {
    // The move needs the capture, which delivers the release.
}

void SendMessageA(std::uintptr_t window, unsigned message, std::uintptr_t command) {
    QWidget* widget = QWidget::find(window);
    if (widget != nullptr && message == SYSTEM_COMMAND && command == MOVE_BY_POINTER) {
        WindowMover::start(*widget);
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
