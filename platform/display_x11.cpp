#include "platform/display.h"

namespace zvonivec {

std::string displayBackEnds() {
    return "xcb;wayland";
}

} // namespace zvonivec
