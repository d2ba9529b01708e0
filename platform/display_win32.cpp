#include "platform/display.h"

namespace zvonivec {

std::string displayBackEnds() {
    return "windows";
}

} // namespace zvonivec
