// A private screen for a test: an X server without hardware, and a window manager on it.
#pragma once

#include "tests/support/geometry.h"
#include "tests/support/process.h"

#include <string>
#include <vector>

// Xlib's connection. Xlib's headers define short common words as macros, so this header doesn't
// include them.
struct _XDisplay; // NOLINT(bugprone-reserved-identifier)

namespace support {

/// Settings of a Display.
struct DisplayOptions {
    /// "openbox", "xfwm4", "metacity", "marco", "mutter", "kwin", "i3", "fluxbox", "icewm"; empty:
    /// none
    std::string windowManager = "openbox";
    int width = 1280;
    int height = 800;
    int secondWidth =
        0; ///< width of a second monitor right of the first, of the same height; 0: none
    bool secondIsPrimary = false;
};

/// Rules
///  * The constructor returns when clients can connect and the window manager has announced itself.
///    When that fails, ok() is false and problem() gives the reason.
///  * Every Display is a server with a number of its own, so tests can run side by side.
///  * connection() is an Xlib connection for the test's thread. It ignores protocol errors, for
///    example from a question about a window that has just gone. The question then has no answer.
///  * Clients that were started with environment() end before the Display is destroyed.
class Display {
public:
    explicit Display(const DisplayOptions& options = {});
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;
    ~Display();

    [[nodiscard]] bool ok() const { return problem_.empty(); }
    [[nodiscard]] const std::string& problem() const { return problem_; }
    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }
    [[nodiscard]] _XDisplay* connection() const { return connection_; }

    /// Returns the server's name, such as ":7".
    [[nodiscard]] const std::string& name() const { return name_; }

    /// Returns the process of the server.
    [[nodiscard]] pid_t server() const { return server_.pid(); }

    [[nodiscard]] bool hasWindowManager() const { return windowManager_.pid() > 0; }

    /// Waits until the window manager has served all events so far, but not long: while it moves a
    /// window it may leave other things for later. Does nothing without one that can be asked.
    void waitForWindowManager() const;
    /// Such waits do nothing from now on.
    void askWindowManagerNoMore() { answers_ = false; }

    /// Whether the window manager puts every window that it doesn't manage above all others.
    [[nodiscard]] bool raisesUnmanagedWindows() const { return raisesUnmanagedWindows_; }

    /// Whether a program combines the windows into the screen's picture.
    [[nodiscard]] bool hasCompositor() const;

    /// Returns the environment for clients: this display, a home folder of their own and nothing of
    /// the session that runs the tests, such as Wayland, a message bus or toolkit settings.
    [[nodiscard]] Process::Environment environment() const;
    /// Sets these variables in the test process.
    void useInThisProcess() const;
    [[nodiscard]] std::string home() const { return folder_.file("home"); }

    /// Kills the window manager, as a crash would. The windows stay.
    void killWindowManager();
    /// Kills the server. After that this object can't be used, but the exit codes of clients still
    /// can.
    void killServer();

private:
    [[nodiscard]] bool startServer(const DisplayOptions& options);
    [[nodiscard]] bool startWindowManager(const std::string& name);
    [[nodiscard]] bool windowManagerWorks() const;
    [[nodiscard]] std::vector<unsigned long> property(unsigned long window, const char* name) const;
    [[nodiscard]] std::vector<unsigned long> rootProperty(const char* name) const;

    TemporaryFolder folder_;
    Process server_;
    Process bus_;
    Process windowManager_;
    std::string name_;
    std::string problem_;
    _XDisplay* connection_ = nullptr;
    bool answers_ = false; ///< whether the window manager tells the frame of a window to come
    int width_ = 0;
    int height_ = 0;
    bool raisesUnmanagedWindows_ = false;
};

} // namespace support
