#include "platform/display.h"

namespace zvonivec {

std::string displayBackEnds() {
    return "windows";
}

bool hotSpotIsInDevicePixels() {
    return false;
}

} // namespace zvonivec
