// The system's ways to ask a program to end.
#pragma once

#include <functional>
#include <memory>

namespace zvonivec {

/// While this lives, SIGTERM, SIGINT and SIGHUP run a function on the user-interface thread instead
/// of killing the process. Afterwards they are ignored: the program is ending already. On Windows
/// it is the end of the session that runs the function, once, before the process may be killed. One
/// object at a time, made after the toolkit has started.
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
