#include "tests/support/alive_question.h"

#include <X11/Xlib.h>

namespace support {

AliveQuestion::AliveQuestion(const Display& display)
    : connection_(XOpenDisplay(display.name().c_str())) {
    // The toolkit's answer goes to those who watch the root itself.
    XSelectInput(connection_, DefaultRootWindow(connection_), StructureNotifyMask);
}

AliveQuestion::~AliveQuestion() {
    XCloseDisplay(connection_);
}

std::optional<std::chrono::milliseconds>
AliveQuestion::ask(const Window& window, const std::function<bool()>& isRunning) {
    using Clock = std::chrono::steady_clock;
    const Atom ping = XInternAtom(connection_, "_NET_WM_PING", False);
    XEvent question = {};
    question.xclient.type = ClientMessage;
    question.xclient.window = window.id();
    question.xclient.message_type = XInternAtom(connection_, "WM_PROTOCOLS", False);
    question.xclient.format = 32;
    question.xclient.data.l[0] = static_cast<long>(ping);
    question.xclient.data.l[1] = ++number_;
    question.xclient.data.l[2] = static_cast<long>(window.id());
    const auto begin = Clock::now();
    XSendEvent(connection_, window.id(), False, NoEventMask, &question);
    XSync(connection_, False);
    bool answered = false;
    waitUntil(
        [&] {
            XEvent event;
            while (XPending(connection_) > 0) {
                XNextEvent(connection_, &event);
                answered = answered || (event.type == ClientMessage &&
                                        static_cast<Atom>(event.xclient.data.l[0]) == ping &&
                                        event.xclient.data.l[1] == number_);
            }
            return answered || !isRunning();
        },
        std::chrono::seconds(10));
    return answered ? std::optional(std::chrono::duration_cast<std::chrono::milliseconds>(
                          Clock::now() - begin))
                    : std::nullopt;
}

} // namespace support
