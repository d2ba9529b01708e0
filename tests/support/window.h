// Other programs' windows, seen from outside as a window manager or a taskbar sees them.
#pragma once

#include "tests/support/display.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace support {

/// A window of a client. Rules
///  * The window may disappear at any time. Answers are then empty or false.
///  * The Display must outlive this object.
class Window {
public:
    using Id = unsigned long;

    Window(const Display& display, Id id) : display_(&display), id_(id) {}

    [[nodiscard]] Id id() const { return id_; }
    /// In UTF-8, from _NET_WM_NAME or else from WM_NAME.
    [[nodiscard]] std::string title() const;
    /// Returns the class part of WM_CLASS.
    [[nodiscard]] std::string className() const;
    /// Returns the process that the window names as its owner, or 0 when it names none.
    [[nodiscard]] pid_t pid() const;
    [[nodiscard]] const Display& display() const { return *display_; }

    /// Returns the client area on the screen.
    [[nodiscard]] Rectangle place() const;
    [[nodiscard]] bool exists() const;
    /// Whether the window and all its parents are mapped.
    [[nodiscard]] bool isShown() const;
    /// Whether WM_STATE is iconic.
    [[nodiscard]] bool isMinimised() const;
    /// Whether the window bypasses the window manager: it then has no frame and no taskbar entry.
    [[nodiscard]] bool isUnmanaged() const;
    /// Whether the window manager draws a frame, so that not all frame extents are 0.
    [[nodiscard]] bool hasFrame() const;
    /// Whether _NET_WM_STATE contains an atom, such as "_NET_WM_STATE_ABOVE".
    [[nodiscard]] bool hasState(const char* atom) const;
    [[nodiscard]] bool isActive() const;
    /// Returns how many windows, pictures, cursors and the like its program holds in the display
    /// server.
    [[nodiscard]] unsigned heldInServer() const;

    /// Return the visible area and the area that takes clicks, relative to the client area.
    [[nodiscard]] std::vector<Rectangle> boundingShape() const;
    [[nodiscard]] std::vector<Rectangle> inputShape() const;

    /// Sends WM_DELETE_WINDOW, as the frame's close button does.
    void requestClose() const;
    /// Minimises the window, as the frame's minimise button does.
    void minimise() const;
    /// Restores, raises and focuses the window, as a taskbar does.
    void activate() const;
    /// Focuses the window without a window manager.
    void focus() const;
    void moveTo(Point place) const;
    void raise() const;

    friend bool operator==(const Window& a, const Window& b) { return a.id_ == b.id_; }

private:
    const Display* display_;
    Id id_;
};

/// Asks the window manager for the first of its desktops.
void showFirstDesktop(const Display& display);

/// Returns all windows that have a title, shown or not, in stacking order from the bottom.
std::vector<Window> titledWindows(const Display& display);

/// Returns the first of titledWindows() for which the condition holds.
std::optional<Window> findWindow(const Display& display,
                                 const std::function<bool(const Window&)>& condition);

/// Returns the windows that the window manager lists in _NET_CLIENT_LIST, oldest first.
std::vector<Window> managedWindows(const Display& display);

/// Waits until a window with this title is shown.
std::optional<Window> waitForWindow(const Display& display, const std::string& title,
                                    std::chrono::milliseconds limit = std::chrono::seconds(20));

/// Records what happens to a window.
class WindowHistory {
public:
    /// The window's Display must outlive this object.
    explicit WindowHistory(const Window& window);
    WindowHistory(const WindowHistory&) = delete;
    WindowHistory& operator=(const WindowHistory&) = delete;
    ~WindowHistory();

    [[nodiscard]] int timesHidden() const;
    /// Returns the window's places on the screen since then, in order.
    [[nodiscard]] std::vector<Point> places() const;

private:
    void read() const;

    ::_XDisplay* connection_; ///< a connection of its own, which queues the events
    Window::Id id_;
    mutable int timesHidden_ = 0;
    mutable std::vector<Point> places_;
};

/// A window of the test with a single colour. It records the clicks it gets.
class PlainWindow {
public:
    enum class Kind {
        backdrop, ///< beneath all other windows, unmanaged where that is possible
        ordinary, ///< managed, like an ordinary program's window
    };
    struct Click {
        Point place; ///< on the screen
        int button = 0;
        bool pressed = false; ///< false for a release
        friend bool operator==(const Click&, const Click&) = default;
    };

    /// The window is shown when the constructor returns. An ordinary window is also where the
    /// window manager has put it.
    PlainWindow(const Display& display, const Rectangle& place, std::uint32_t colour,
                Kind kind = Kind::backdrop);
    PlainWindow(const PlainWindow&) = delete;
    PlainWindow& operator=(const PlainWindow&) = delete;
    ~PlainWindow();

    [[nodiscard]] const Window& window() const { return window_; }
    /// Returns all clicks since the last call.
    std::vector<Click> takeClicks();

private:
    ::_XDisplay* connection_;
    Window window_;
};

} // namespace support
