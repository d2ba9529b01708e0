// The toolkit as a whole: its start, its event loop, the screen.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace zvonivec {

class Application {
public:
    /// Starts the toolkit on the named display back-ends, the first that works ("xcb;wayland").
    /// Without any that works the process ends with a message.
    explicit Application(const std::string& backEnds);
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;
    ~Application();

    /// Serves events until the last form has been unloaded. Returns the process's exit code.
    int run();

    /// Runs a function on the user-interface thread, later and in order. Callable from any thread.
    static void post(std::function<void()> function);

    /// The folder of the program's file, with the system's separators.
    [[nodiscard]] static std::string programFolder();

private:
    friend class Form;
    static void formLoaded();
    static void formUnloaded();

    struct Toolkit;
    std::unique_ptr<Toolkit> toolkit_;
};

/// One pass over the waiting events: pointer, painting, timers, the engine's. A handler that calls
/// this may find anything changed afterwards, even its form unloaded.
void DoEvents();

/// The primary screen.
namespace Screen {

/// Twips; 0 without a screen.
[[nodiscard]] float Width();
[[nodiscard]] float Height();

} // namespace Screen

/// The user's country.
namespace Locale {

/// '.' or ','; '.' where the country has another one.
[[nodiscard]] char decimalSeparator();

} // namespace Locale

} // namespace zvonivec
