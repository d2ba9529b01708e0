// A Wayland compositor for a test, in a window that covers a Display.
#pragma once

#include "tests/support/display.h"

namespace support {

/// Rules
///  * The compositor's screen is the Display's: Pointer, Keyboard and Screenshot of the Display
///  show
///    and move what a user of the compositor sees and moves.
///  * The Display has no window manager and must outlive this object.
///  * Names are "sway", "weston", "mutter_wayland" and "kwin_wayland". With "_native" at the end
///  the
///    session has no X server.
class WaylandSession {
public:
    WaylandSession(const Display& display, const std::string& name);
    WaylandSession(const WaylandSession&) = delete;
    WaylandSession& operator=(const WaylandSession&) = delete;
    ~WaylandSession();

    [[nodiscard]] bool ok() const { return problem_.empty(); }
    [[nodiscard]] const std::string& problem() const { return problem_; }
    [[nodiscard]] bool hasXServer() const { return hasXServer_; }
    /// Returns the environment for clients.
    [[nodiscard]] Process::Environment environment() const;
    [[nodiscard]] bool isRunning() { return compositor_.running(); }
    /// Kills the compositor, as a crash would.
    void kill();

private:
    [[nodiscard]] std::vector<std::string> command(const std::string& compositor) const;
    [[nodiscard]] bool startBus(const Process::Options& options);
    /// Learns the names of the session's two servers, when the compositor has announced them.
    [[nodiscard]] bool findServers(const std::string& compositor);

    const Display* display_;
    TemporaryFolder folder_;
    Process bus_;
    Process compositor_;
    bool hasXServer_;
    std::string waylandName_;
    std::string xName_;
    std::string authority_; ///< the file with the X server's password, if any
    std::string problem_;
};

} // namespace support
