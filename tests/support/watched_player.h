// A player that is treated badly: started, asked whether it is alive, and judged at its end.
#pragma once

#include "tests/support/alive_question.h"
#include "tests/support/display.h"
#include "tests/support/window.h"

#include <chrono>
#include <string>
#include <vector>

namespace support {

/// Rules
///  * The player runs in a folder of its own, from a copy, one life after another. Its settings and
///    its home last.
class WatchedPlayer {
public:
    WatchedPlayer(const Display& display, const std::string& program,
                  Process::Environment environment);
    WatchedPlayer(const WatchedPlayer&) = delete;
    WatchedPlayer& operator=(const WatchedPlayer&) = delete;
    ~WatchedPlayer();

    /// Starts the player and waits for its window. Returns whether it came.
    bool start();
    [[nodiscard]] bool isRunning() { return process_.running(); }
    [[nodiscard]] const Process& process() const { return process_; }

    /// The player's windows that are shown, from the bottom.
    [[nodiscard]] std::vector<Window> windows() const;
    /// The player itself, if it is shown.
    [[nodiscard]] std::optional<Window> mainWindow() const;

    /// Shows the player again if it is minimised, or if a click beside it has led to another
    /// desktop.
    void restore() const;

    /// Asks the player's window whether it is alive, as window managers do. Returns
    /// the time that the answer took, or nothing when none came within ten seconds though the
    /// player runs.
    [[nodiscard]] std::optional<std::chrono::milliseconds> answer();

    /// What is wrong with the end of the process and with what it left; empty when all is well.
    [[nodiscard]] std::string judgeEnd();

private:
    [[nodiscard]] std::optional<Window> mainWindowEvenHidden() const;

    const Display* display_;
    AliveQuestion question_;
    TemporaryFolder folder_;
    std::string program_;
    Process::Environment environment_;
    Process process_;
};

} // namespace support
