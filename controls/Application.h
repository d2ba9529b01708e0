// The toolkit: its start, its event loop and the screen.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace zvonivec {

class Application {
public:
    /// Starts the toolkit on the first of the named display back-ends that works ("xcb;wayland").
    /// Ends the process with a message when none works.
    explicit Application(const std::string& backEnds);
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;
    ~Application();

    /// Processes events until the last form has been unloaded. Returns the process's exit code.
    /// Ends the process when the display goes first.
    int run();

    /// Posts a function to the user-interface thread. Posted functions run later and in order.
    /// Callable from any thread.
    static void post(std::function<void()> function);

    /// Returns the folder of the program's file, with the system's separators.
    [[nodiscard]] static std::string programFolder();

private:
    friend class Form;
    static void formLoaded();
    static void formUnloaded();

    struct Toolkit;
    std::unique_ptr<Toolkit> toolkit_;
};

/// Processes the events that are waiting: pointer, painting, timers and the engine's events. After
/// this call a handler may find anything changed, and even its form unloaded.
void DoEvents();

/// The primary screen.
namespace Screen {

/// Twips, or 0 without a screen. The upper left corner is at 0, 0 unless another screen lies to the
/// left of this one or above it.
[[nodiscard]] float Left();
[[nodiscard]] float Top();
[[nodiscard]] float Width();
[[nodiscard]] float Height();

} // namespace Screen

/// The user's regional settings.
namespace Locale {

/// Returns '.' or ','. Returns '.' where the region uses another character.
[[nodiscard]] char decimalSeparator();

} // namespace Locale

} // namespace zvonivec
