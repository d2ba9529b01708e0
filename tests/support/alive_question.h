// The question of window managers whether a program still serves its window.
#pragma once

#include "tests/support/window.h"

#include <chrono>
#include <functional>
#include <optional>

namespace support {

/// Rules
///  * A program answers after all that reached it earlier.
class AliveQuestion {
public:
    explicit AliveQuestion(const Display& display);
    AliveQuestion(const AliveQuestion&) = delete;
    AliveQuestion& operator=(const AliveQuestion&) = delete;
    ~AliveQuestion();

    /// Asks a window. Returns the time that the answer took, or nothing when none came within ten
    /// seconds or the program isn't running any more.
    [[nodiscard]] std::optional<std::chrono::milliseconds>
    ask(const Window& window, const std::function<bool()>& isRunning);

private:
    ::_XDisplay* connection_; ///< for answers
    long number_ = 0;         ///< of the last question
};

} // namespace support
