// Requests by the system to end the program.
#pragma once

#include <functional>
#include <memory>

namespace zvonivec {

/// Runs a function on the user-interface thread when the system asks the program to end. Only one
/// object may exist at a time. It is created after the toolkit has started.
///
/// Under Linux the requests are SIGTERM, SIGINT and SIGHUP, which no longer kill the process. After
/// the object has gone they are ignored, because the program is already ending. Under X11 another
/// request is that of the window manager to close a window while a box is open. Under Windows the
/// request is the end of the session. The function then runs once, before the process may be
/// killed.
class EndRequests {
public:
    explicit EndRequests(std::function<void()> end);
    EndRequests(const EndRequests&) = delete;
    EndRequests& operator=(const EndRequests&) = delete;
    ~EndRequests();

private:
    struct Watch;
    std::unique_ptr<Watch> watch_;
};

} // namespace zvonivec
