#include "tests/support/window.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XRes.h>
#include <X11/extensions/shape.h>
#include <algorithm>

namespace support {

namespace {

Atom atomOf(::Display* connection, const char* name) {
    return XInternAtom(connection, name, False);
}

/// Returns a property's items: longs for format 32, bytes for format 8, nothing without a property.
template<typename Item>
std::vector<Item> property(::Display* connection, ::Window window, const char* name) {
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* data = nullptr;
    std::vector<Item> items;
    if (XGetWindowProperty(connection, window, atomOf(connection, name), 0, 1 << 16, False,
                           AnyPropertyType, &type, &format, &count, &rest, &data) == Success &&
        data != nullptr && format == (sizeof(Item) == 1 ? 8 : 32)) {
        const auto* first = reinterpret_cast<const Item*>(data);
        items.assign(first, first + count);
    }
    if (data != nullptr) {
        XFree(data);
    }
    return items;
}

std::vector<::Window> childrenOf(::Display* connection, ::Window window) {
    ::Window root = None;
    ::Window parent = None;
    ::Window* children = nullptr;
    unsigned count = 0;
    std::vector<::Window> result;
    if (XQueryTree(connection, window, &root, &parent, &children, &count) != 0 &&
        children != nullptr) {
        result.assign(children, children + count);
        XFree(children);
    }
    return result;
}

void tellRoot(const Display& display, ::Window window, const char* type, long first, long second) {
    ::Display* connection = display.connection();
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = atomOf(connection, type);
    event.xclient.format = 32;
    event.xclient.data.l[0] = first;
    event.xclient.data.l[1] = second;
    XSendEvent(connection, DefaultRootWindow(connection), False,
               SubstructureNotifyMask | SubstructureRedirectMask, &event);
    XSync(connection, False);
}

std::vector<Rectangle> shapeOf(::Display* connection, ::Window window, int kind) {
    int count = 0;
    int ordering = 0;
    std::vector<Rectangle> result;
    XRectangle* rectangles = XShapeGetRectangles(connection, window, kind, &count, &ordering);
    for (int i = 0; i < count; ++i) {
        result.push_back(
            {rectangles[i].x, rectangles[i].y, rectangles[i].width, rectangles[i].height});
    }
    if (rectangles != nullptr) {
        XFree(rectangles);
    }
    return result;
}

std::optional<XWindowAttributes> attributesOf(::Display* connection, ::Window window) {
    XWindowAttributes attributes = {};
    if (XGetWindowAttributes(connection, window, &attributes) == 0) {
        return std::nullopt;
    }
    return attributes;
}

} // namespace

std::string Window::title() const {
    ::Display* connection = display_->connection();
    std::vector<char> text = property<char>(connection, id_, "_NET_WM_NAME");
    if (text.empty()) {
        text = property<char>(connection, id_, "WM_NAME");
    }
    return {text.begin(), text.end()};
}

std::string Window::className() const {
    const std::vector<char> both = property<char>(display_->connection(), id_, "WM_CLASS");
    const auto end = std::find(both.begin(), both.end(), '\0');
    return end == both.end() ? "" : std::string(&*end + 1);
}

pid_t Window::pid() const {
    const std::vector<long> pid = property<long>(display_->connection(), id_, "_NET_WM_PID");
    return pid.empty() ? 0 : static_cast<pid_t>(pid[0]);
}

Rectangle Window::place() const {
    ::Display* connection = display_->connection();
    const auto attributes = attributesOf(connection, id_);
    if (!attributes) {
        return {};
    }
    int x = 0;
    int y = 0;
    ::Window child = None;
    XTranslateCoordinates(connection, id_, DefaultRootWindow(connection), 0, 0, &x, &y, &child);
    return {x, y, attributes->width, attributes->height};
}

bool Window::exists() const {
    return attributesOf(display_->connection(), id_).has_value();
}

bool Window::isShown() const {
    const auto attributes = attributesOf(display_->connection(), id_);
    return attributes && attributes->map_state == IsViewable;
}

bool Window::isMinimised() const {
    const std::vector<long> state = property<long>(display_->connection(), id_, "WM_STATE");
    return !state.empty() && state[0] == IconicState;
}

bool Window::isUnmanaged() const {
    const auto attributes = attributesOf(display_->connection(), id_);
    return attributes && attributes->override_redirect != False;
}

bool Window::hasFrame() const {
    const std::vector<long> widths =
        property<long>(display_->connection(), id_, "_NET_FRAME_EXTENTS");
    return std::any_of(widths.begin(), widths.end(), [](long width) { return width != 0; });
}

bool Window::hasState(const char* atom) const {
    ::Display* connection = display_->connection();
    const std::vector<Atom> states = property<Atom>(connection, id_, "_NET_WM_STATE");
    return std::find(states.begin(), states.end(), atomOf(connection, atom)) != states.end();
}

unsigned Window::heldInServer() const {
    int kinds = 0;
    XResType* held = nullptr;
    unsigned all = 0;
    if (XResQueryClientResources(display_->connection(), id_, &kinds, &held) != 0) {
        for (int i = 0; i < kinds; ++i) {
            all += held[i].count;
        }
        XFree(held);
    }
    return all;
}

bool Window::isActive() const {
    ::Display* connection = display_->connection();
    ::Window focused = None;
    int revert = 0;
    XGetInputFocus(connection, &focused, &revert);
    // A child window that belongs to the toolkit may have the focus.
    while (focused > PointerRoot && focused != id_) {
        ::Window root = None;
        ::Window parent = None;
        ::Window* children = nullptr;
        unsigned count = 0;
        if (XQueryTree(connection, focused, &root, &parent, &children, &count) == 0) {
            return false;
        }
        if (children != nullptr) {
            XFree(children);
        }
        focused = parent;
    }
    return focused == id_;
}

std::vector<Rectangle> Window::boundingShape() const {
    return shapeOf(display_->connection(), id_, ShapeBounding);
}

std::vector<Rectangle> Window::inputShape() const {
    return shapeOf(display_->connection(), id_, ShapeInput);
}

void Window::requestClose() const {
    ::Display* connection = display_->connection();
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = id_;
    event.xclient.message_type = atomOf(connection, "WM_PROTOCOLS");
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(atomOf(connection, "WM_DELETE_WINDOW"));
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(connection, id_, False, NoEventMask, &event);
    XSync(connection, False);
}

void Window::minimise() const {
    ::Display* connection = display_->connection();
    XIconifyWindow(connection, id_, DefaultScreen(connection));
    XSync(connection, False);
}

void Window::activate() const {
    // Source 2 is a pager. Window managers trust its requests.
    tellRoot(*display_, id_, "_NET_ACTIVE_WINDOW", 2, CurrentTime);
}

void Window::focus() const {
    XSetInputFocus(display_->connection(), id_, RevertToPointerRoot, CurrentTime);
    XSync(display_->connection(), False);
}

void Window::moveTo(Point place) const {
    XMoveWindow(display_->connection(), id_, place.x, place.y);
    XSync(display_->connection(), False);
}

void Window::raise() const {
    XRaiseWindow(display_->connection(), id_);
    XSync(display_->connection(), False);
}

void showFirstDesktop(const Display& display) {
    tellRoot(display, DefaultRootWindow(display.connection()), "_NET_CURRENT_DESKTOP", 0,
             CurrentTime);
}

std::vector<Window> titledWindows(const Display& display) {
    ::Display* connection = display.connection();
    std::vector<Window> result;
    std::vector<::Window> open = childrenOf(connection, DefaultRootWindow(connection));
    std::reverse(open.begin(), open.end());
    while (!open.empty()) {
        const ::Window window = open.back();
        open.pop_back();
        if (!Window(display, window).title().empty()) {
            result.emplace_back(display, window);
        }
        const std::vector<::Window> children = childrenOf(connection, window);
        open.insert(open.end(), children.rbegin(), children.rend());
    }
    return result;
}

std::optional<Window> findWindow(const Display& display,
                                 const std::function<bool(const Window&)>& condition) {
    for (const Window& window : titledWindows(display)) {
        if (condition(window)) {
            return window;
        }
    }
    return std::nullopt;
}

std::vector<Window> managedWindows(const Display& display) {
    std::vector<Window> result;
    for (const ::Window window : property<::Window>(
             display.connection(), DefaultRootWindow(display.connection()), "_NET_CLIENT_LIST")) {
        result.emplace_back(display, window);
    }
    return result;
}

std::optional<Window> waitForWindow(const Display& display, const std::string& title,
                                    std::chrono::milliseconds limit) {
    std::optional<Window> found;
    waitUntil(
        [&] {
            found = findWindow(display, [&](const Window& window) {
                return window.isShown() && window.title() == title;
            });
            return found.has_value();
        },
        limit);
    return found;
}

WindowHistory::WindowHistory(const Window& window)
    : connection_(XOpenDisplay(DisplayString(window.display().connection()))), id_(window.id()) {
    XSelectInput(connection_, id_, StructureNotifyMask);
    XSync(connection_, False);
}

WindowHistory::~WindowHistory() {
    XCloseDisplay(connection_);
}

int WindowHistory::timesHidden() const {
    read();
    return timesHidden_;
}

std::vector<Point> WindowHistory::places() const {
    read();
    return places_;
}

void WindowHistory::read() const {
    XSync(connection_, False);
    while (XPending(connection_) > 0) {
        XEvent event;
        XNextEvent(connection_, &event);
        if (event.type == UnmapNotify) {
            ++timesHidden_;
        } else if (event.type == ConfigureNotify && event.xconfigure.send_event != 0) {
            places_.push_back({event.xconfigure.x, event.xconfigure.y});
        } else if (event.type == ConfigureNotify) {
            // The server's coordinates are relative to the frame if there is a frame.
            ::Window root = None;
            ::Window parent = None;
            ::Window* children = nullptr;
            unsigned count = 0;
            if (XQueryTree(connection_, id_, &root, &parent, &children, &count) != 0) {
                XFree(children);
                if (parent == root) {
                    places_.push_back({event.xconfigure.x, event.xconfigure.y});
                }
            }
        }
    }
}

PlainWindow::PlainWindow(const Display& display, const Rectangle& place, std::uint32_t colour,
                         Kind kind)
    : connection_(display.connection()), window_(display, None) {
    XSetWindowAttributes attributes = {};
    attributes.background_pixel = colour;
    const bool isDesktop = kind == Kind::backdrop && display.raisesUnmanagedWindows();
    attributes.override_redirect = kind == Kind::backdrop && !isDesktop ? True : False;
    attributes.event_mask = ButtonPressMask | ButtonReleaseMask;
    const ::Window window = XCreateWindow(
        connection_, DefaultRootWindow(connection_), place.x, place.y,
        static_cast<unsigned>(place.width), static_cast<unsigned>(place.height), 0, CopyFromParent,
        InputOutput, nullptr, CWBackPixel | CWOverrideRedirect | CWEventMask, &attributes);
    XStoreName(connection_, window, "Plain window");
    XSizeHints hints = {};
    hints.flags = USPosition | USSize;
    hints.x = place.x;
    hints.y = place.y;
    hints.width = place.width;
    hints.height = place.height;
    XSetWMNormalHints(connection_, window, &hints);
    if (isDesktop) { // beneath all others, without a frame
        const Atom type = XInternAtom(connection_, "_NET_WM_WINDOW_TYPE_DESKTOP", False);
        XChangeProperty(connection_, window, XInternAtom(connection_, "_NET_WM_WINDOW_TYPE", False),
                        XA_ATOM, 32, PropModeReplace, reinterpret_cast<const unsigned char*>(&type),
                        1);
    }
    XMapWindow(connection_, window);
    if (kind == Kind::backdrop && !isDesktop) {
        XLowerWindow(connection_, window);
    }
    XSync(connection_, False);
    window_ = Window(display, window);
    waitUntil([this] { return window_.isShown(); });
    // A window manager shows a new window first, and then raises it and gives it the keyboard.
    display.waitForWindowManager();
}

PlainWindow::~PlainWindow() {
    XDestroyWindow(connection_, window_.id());
    XSync(connection_, False);
}

std::vector<PlainWindow::Click> PlainWindow::takeClicks() {
    std::vector<Click> clicks;
    XSync(connection_, False);
    XEvent event = {};
    while (XCheckWindowEvent(connection_, window_.id(), ButtonPressMask | ButtonReleaseMask,
                             &event) != False) {
        clicks.push_back({{event.xbutton.x_root, event.xbutton.y_root},
                          static_cast<int>(event.xbutton.button),
                          event.type == ButtonPress});
    }
    return clicks;
}

} // namespace support
