// Other programs' windows, seen from outside as a window manager or taskbar sees them.
#pragma once

#include "tests/support/display.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace support {

/// One window of a client. Rules
///  * The window may go at any time; answers are then empty or False.
///  * The Display must outlive it.
class Window {
public:
    using Id = unsigned long;

    Window(const Display& display, Id id) : display_(&display), id_(id) {}

    [[nodiscard]] Id id() const { return id_; }
    /// UTF-8, from _NET_WM_NAME, else WM_NAME.
    [[nodiscard]] std::string title() const;
    /// The class part of WM_CLASS.
    [[nodiscard]] std::string className() const;
    /// The process that it says it belongs to, 0 when it doesn't say.
    [[nodiscard]] pid_t pid() const;
    [[nodiscard]] const Display& display() const { return *display_; }

    /// The client area on the screen.
    [[nodiscard]] Rectangle place() const;
    [[nodiscard]] bool exists() const;
    /// Mapped, with all that it lies in.
    [[nodiscard]] bool isShown() const;
    /// WM_STATE is iconic.
    [[nodiscard]] bool isMinimised() const;
    /// Past the window manager: no frame, no taskbar entry.
    [[nodiscard]] bool isUnmanaged() const;
    /// A frame drawn by the window manager: left, right, top, bottom widths are not all 0.
    [[nodiscard]] bool hasFrame() const;
    /// Whether _NET_WM_STATE holds an atom, such as "_NET_WM_STATE_ABOVE".
    [[nodiscard]] bool hasState(const char* atom) const;
    [[nodiscard]] bool isActive() const;

    /// What it is seen through, and what it takes clicks in, relative to its client area.
    [[nodiscard]] std::vector<Rectangle> boundingShape() const;
    [[nodiscard]] std::vector<Rectangle> inputShape() const;

    /// As the frame's close button does: WM_DELETE_WINDOW.
    void requestClose() const;
    /// As the frame's minimise button does.
    void minimise() const;
    /// As a taskbar does: restored if minimised, raised, given the keyboard.
    void activate() const;
    /// Gives it the keyboard without a window manager.
    void focus() const;
    void moveTo(Point place) const;
    void raise() const;

    friend bool operator==(const Window& a, const Window& b) { return a.id_ == b.id_; }

private:
    const Display* display_;
    Id id_;
};

/// All windows below the root that have a title, in stacking order from below, whether shown or
/// not.
std::vector<Window> titledWindows(const Display& display);

/// The first of titledWindows for which the condition holds.
std::optional<Window> findWindow(const Display& display,
                                 const std::function<bool(const Window&)>& condition);

/// The windows that the window manager lists, oldest first (_NET_CLIENT_LIST).
std::vector<Window> managedWindows(const Display& display);

/// The shown window with this title, waited for.
std::optional<Window> waitForWindow(const Display& display, const std::string& title,
                                    std::chrono::milliseconds limit = std::chrono::seconds(20));

/// What happens to a window from now on.
class WindowHistory {
public:
    /// The window's Display must outlive it.
    explicit WindowHistory(const Window& window);
    WindowHistory(const WindowHistory&) = delete;
    WindowHistory& operator=(const WindowHistory&) = delete;
    ~WindowHistory();

    [[nodiscard]] int timesHidden() const;
    /// Where it has been put since, in order, on the screen.
    [[nodiscard]] std::vector<Point> places() const;

private:
    void read() const;

    ::_XDisplay* connection_; ///< of its own, so that events can wait in it
    Window::Id id_;
    mutable int timesHidden_ = 0;
    mutable std::vector<Point> places_;
};

/// A window of the test's own, of one colour, that records the clicks it gets.
class PlainWindow {
public:
    enum class Kind {
        backdrop, ///< unmanaged, beneath all others
        ordinary, ///< an ordinary program's window, managed
    };
    struct Click {
        Point place; ///< on the screen
        int button = 0;
        bool pressed = false; ///< else released
        friend bool operator==(const Click&, const Click&) = default;
    };

    /// Shown when the constructor returns; an ordinary window also where the window manager put it.
    PlainWindow(const Display& display, const Rectangle& place, std::uint32_t colour,
                Kind kind = Kind::backdrop);
    PlainWindow(const PlainWindow&) = delete;
    PlainWindow& operator=(const PlainWindow&) = delete;
    ~PlainWindow();

    [[nodiscard]] const Window& window() const { return window_; }
    /// All clicks since the last call.
    std::vector<Click> takeClicks();

private:
    ::_XDisplay* connection_;
    Window window_;
};

} // namespace support
