#include "platform/display.h"

#include <QGuiApplication>
#include <xcb/xcb.h>

namespace zvonivec {

std::string displayBackEnds() {
    // The toolkit writes a message for each back-end that doesn't start.
    xcb_connection_t* server = xcb_connect(nullptr, nullptr);
    const bool answers = xcb_connection_has_error(server) == 0;
    xcb_disconnect(server);
    return answers ? "xcb;wayland" : "wayland;xcb";
}

bool hotSpotIsInDevicePixels() {
    return QGuiApplication::platformName() == "xcb";
}

} // namespace zvonivec
