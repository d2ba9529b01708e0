#include "platform/display.h"

#include <QGuiApplication>

namespace zvonivec {

std::string displayBackEnds() {
    return "xcb;wayland";
}

bool hotSpotIsInDevicePixels() {
    return QGuiApplication::platformName() == "xcb";
}

} // namespace zvonivec
