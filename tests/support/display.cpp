#include "tests/support/display.h"

#include "tests/support/private_session.h"

#include <X11/Xlib.h>
#include <X11/extensions/Xrandr.h>
#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <map>

namespace support {

namespace {

constexpr const char* FRAME_QUESTION = "_NET_REQUEST_FRAME_EXTENTS";

int ignoreError(::Display*, XErrorEvent*) {
    return 0;
}

void setMonitor(::Display* connection, const char* name, bool first, bool primary,
                const Rectangle& place) {
    XRRMonitorInfo* monitor = XRRAllocateMonitor(connection, 0);
    monitor->name = XInternAtom(connection, name, False);
    monitor->primary = primary ? True : False;
    monitor->x = place.x;
    monitor->y = place.y;
    monitor->width = place.width;
    monitor->height = place.height;
    // Millimetres at 96 dots per inch.
    monitor->mwidth = place.width * 254 / 960;
    monitor->mheight = place.height * 254 / 960;
    RROutput output = None;
    if (first) {
        XRRScreenResources* resources =
            XRRGetScreenResourcesCurrent(connection, DefaultRootWindow(connection));
        if (resources != nullptr && resources->noutput > 0) {
            output = resources->outputs[0];
            monitor->noutput = 1;
            monitor->outputs = &output;
        }
        XRRSetMonitor(connection, DefaultRootWindow(connection), monitor);
        if (resources != nullptr) {
            XRRFreeScreenResources(resources);
        }
    } else {
        XRRSetMonitor(connection, DefaultRootWindow(connection), monitor);
    }
    XFree(monitor);
}

} // namespace

Display::Display(const DisplayOptions& options)
    : width_(options.width + options.secondWidth), height_(options.height) {
    std::filesystem::permissions(folder_.path(), std::filesystem::perms::owner_all);
    for (const char* name : {"mutter", "metacity", "marco", "kwin"}) {
        raisesUnmanagedWindows_ = raisesUnmanagedWindows_ || options.windowManager == name;
    }
    // Servers that start at the same moment may take each other's number.
    bool started = false;
    for (int attempt = 0; attempt < 3 && !started; ++attempt) {
        started = startServer(options);
    }
    if (!started) {
        problem_ = "Xvfb doesn't start: " + readFile(folder_.file("xvfb.log"));
        return;
    }
    if (options.secondWidth > 0) {
        setMonitor(connection_, "first", true, !options.secondIsPrimary,
                   {0, 0, options.width, height_});
        setMonitor(connection_, "second", false, options.secondIsPrimary,
                   {options.width, 0, options.secondWidth, height_});
        XSync(connection_, False);
    }
    if (!options.windowManager.empty() && !startWindowManager(options.windowManager)) {
        problem_ = options.windowManager +
                   " doesn't start: " + readFile(folder_.file("window-manager.log"));
    }
}

Display::~Display() {
    windowManager_.terminate();
    bus_.terminate();
    if (connection_ != nullptr) {
        XCloseDisplay(connection_);
    }
    server_.terminate();
}

bool Display::startServer(const DisplayOptions& options) {
    const std::string number = folder_.file("number");
    writeFile(number, "");
    Process::Options files;
    files.outputFile = number;
    files.errorFile = folder_.file("xvfb.log");
    files.environment = privateSession(folder_.path());
    const std::string size =
        std::to_string(options.width + options.secondWidth) + "x" + std::to_string(options.height);
    // Without -noreset the server would reset when its last client disconnects.
    server_ = Process({"Xvfb", "-displayfd", "1", "-screen", "0", size + "x24", "-dpi", "96",
                       "-nolisten", "tcp", "-noreset"},
                      files);
    const bool announced = waitUntil(
        [&] { return !server_.running() || readFile(number).find('\n') != std::string::npos; });
    if (!announced || !server_.running()) {
        server_.terminate();
        return false;
    }
    name_ = ":" + std::to_string(std::stoi(readFile(number)));
    XSetErrorHandler(ignoreError);
    connection_ = XOpenDisplay(name_.c_str());
    return connection_ != nullptr;
}

bool Display::startWindowManager(const std::string& name) {
    Process::Options options;
    options.environment = environment();
    // Window managers write into the home, which is to show what the player writes. They paint with
    // the processor alone and keep their settings in memory.
    options.environment.emplace_back("HOME", folder_.path());
    options.environment.emplace_back("GSETTINGS_BACKEND", "memory");
    options.environment.emplace_back("LIBGL_ALWAYS_SOFTWARE", "1");
    options.errorFile = folder_.file("window-manager.log");
    writeFile(folder_.file("i3.config"), "font pango:monospace 8\n");
    // The usual wallpaper needs a program that may be missing, and then a message covers the
    // screen.
    std::filesystem::create_directories(folder_.file(".fluxbox"));
    writeFile(folder_.file(".fluxbox/overlay"), "background: none\n");
    static const std::map<std::string, std::vector<std::string>> commands{
        {"openbox", {"openbox", "--sm-disable"}},
        {"xfwm4", {"xfwm4", "--compositor=off"}},
        {"metacity", {"metacity", "--sm-disable", "--no-composite"}},
        {"marco", {"marco", "--sm-disable", "--no-composite"}},
        {"mutter", {"mutter", "--x11", "--sm-disable"}},
        {"kwin", {"kwin_x11"}},
        {"i3", {"i3", "-c", "i3.config"}},
        {"fluxbox", {"fluxbox"}},
        {"icewm", {"icewm"}},
    };
    const auto command = commands.find(name);
    if (command == commands.end()) {
        return false;
    }
    if (name != "openbox" && name != "i3") {
        // These get their settings from another program, over a message bus.
        const std::string socket = folder_.file("bus");
        bus_ = Process({"dbus-daemon", "--session", "--nofork", "--nopidfile",
                        "--address=unix:path=" + socket},
                       options);
        if (!waitUntil([&] { return std::filesystem::exists(socket); })) {
            return false;
        }
        options.environment.emplace_back("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + socket);
    }
    options.directory = folder_.path();
    windowManager_ = Process(command->second, options);
    if (!waitUntil([this] { return !rootProperty("_NET_SUPPORTING_WM_CHECK").empty(); },
                   std::chrono::seconds(30)) ||
        !windowManagerWorks()) {
        return false;
    }
    const auto abilities = rootProperty("_NET_SUPPORTED");
    answers_ = std::ranges::find(abilities, XInternAtom(connection_, FRAME_QUESTION, False)) !=
               abilities.end();
    return true;
}

std::vector<unsigned long> Display::property(unsigned long window, const char* name) const {
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* data = nullptr;
    std::vector<unsigned long> items;
    if (XGetWindowProperty(connection_, window, XInternAtom(connection_, name, False), 0, 1000,
                           False, AnyPropertyType, &type, &format, &count, &rest,
                           &data) == Success &&
        data != nullptr && format == 32) {
        const auto* first = reinterpret_cast<unsigned long*>(data);
        items.assign(first, first + count);
    }
    if (data != nullptr) {
        XFree(data);
    }
    return items;
}

std::vector<unsigned long> Display::rootProperty(const char* name) const {
    return property(DefaultRootWindow(connection_), name);
}

/// Waits until the window manager has taken in a window and let it go again. A window manager
/// announces itself before it has finished its start, and may lose a window that is mapped in
/// between.
bool Display::windowManagerWorks() const {
    const ::Window window =
        XCreateSimpleWindow(connection_, DefaultRootWindow(connection_), 0, 0, 1, 1, 0, 0, 0);
    bool managed = false;
    for (int attempt = 0; attempt < 100 && !managed; ++attempt) {
        XMapWindow(connection_, window);
        managed = waitUntil([this] { return !rootProperty("_NET_CLIENT_LIST").empty(); },
                            std::chrono::milliseconds(100));
    }
    XDestroyWindow(connection_, window);
    return managed && waitUntil([this] { return rootProperty("_NET_CLIENT_LIST").empty(); });
}

void Display::waitForWindowManager() const {
    if (!answers_) {
        return;
    }
    const ::Window root = DefaultRootWindow(connection_);
    const ::Window window = XCreateSimpleWindow(connection_, root, 0, 0, 1, 1, 0, 0, 0);
    XEvent question = {};
    question.xclient.type = ClientMessage;
    question.xclient.window = window;
    question.xclient.message_type = XInternAtom(connection_, FRAME_QUESTION, False);
    question.xclient.format = 32;
    XSendEvent(connection_, root, False, SubstructureNotifyMask | SubstructureRedirectMask,
               &question);
    XSync(connection_, False);
    waitUntil([&] { return !property(window, "_NET_FRAME_EXTENTS").empty(); },
              std::chrono::seconds(2));
    XDestroyWindow(connection_, window);
}

bool Display::hasCompositor() const {
    return XGetSelectionOwner(connection_, XInternAtom(connection_, "_NET_WM_CM_S0", False)) !=
           None;
}

void Display::useInThisProcess() const {
    setInThisProcess(environment());
}

void Display::killWindowManager() {
    answers_ = false;
    windowManager_.signal(SIGKILL);
    windowManager_.waitForExit();
}

void Display::killServer() {
    XCloseDisplay(connection_);
    connection_ = nullptr;
    server_.signal(SIGKILL);
    server_.waitForExit();
    problem_ = "the server was ended";
}

Process::Environment Display::environment() const {
    Process::Environment environment = privateSession(folder_.path());
    environment.emplace_back("DISPLAY", name_);
    return environment;
}

} // namespace support
