// A screen of a test's own: an X server without hardware, and a window manager on it.
#pragma once

#include "tests/support/geometry.h"
#include "tests/support/process.h"

#include <string>
#include <vector>

// Xlib's connection. Its headers define short common words as macros and stay out of ours.
struct _XDisplay; // NOLINT(bugprone-reserved-identifier)

namespace support {

/// How a Display is set up.
struct DisplayOptions {
    std::string windowManager = "openbox"; ///< "openbox", "xfwm4"; empty: none
    int width = 1280;
    int height = 800;
    int secondWidth =
        0; ///< width of a second monitor right of the first, of the same height; 0: none
};

/// Rules
///  * The constructor returns when clients can connect and the window manager has announced itself;
///    ok() is False, and problem() says why, when that didn't happen.
///  * Every Display is another server with its own number, so tests run side by side.
///  * connection() is one Xlib connection for the thread of the test. Errors of the protocol, such
///    as a question about a window that has just gone, are ignored on it: whoever asks sees that
///    there is no answer.
///  * Clients that were started with environment() must have ended before the Display goes.
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

    /// The server's process.
    [[nodiscard]] pid_t server() const { return server_.pid(); }

    [[nodiscard]] bool hasWindowManager() const { return windowManager_.pid() > 0; }

    /// For clients: this display, a home folder of their own, and nothing of the session that the
    /// tests are run in: no Wayland, no message bus, no toolkit settings.
    [[nodiscard]] Process::Environment environment() const;
    /// Sets these variables in the test process itself.
    void useInThisProcess() const;
    [[nodiscard]] std::string home() const { return folder_.file("home"); }

    /// Ends the window manager, as a crash would, leaving the windows.
    void killWindowManager();
    /// Ends the server, and this object's use with it; clients may still be asked for their ends.
    void killServer();

private:
    [[nodiscard]] bool startServer(const DisplayOptions& options);
    [[nodiscard]] bool startWindowManager(const std::string& name);
    [[nodiscard]] bool windowManagerWorks() const;
    [[nodiscard]] std::vector<unsigned long> rootProperty(const char* name) const;

    TemporaryFolder folder_;
    Process server_;
    Process bus_;
    Process windowManager_;
    std::string name_;
    std::string problem_;
    _XDisplay* connection_ = nullptr;
    int width_ = 0;
    int height_ = 0;
};

} // namespace support
