#include "platform/desktop_dialogs.h"

namespace zvonivec {

bool desktopMayHaveFileDialogs() {
    return true;
}

} // namespace zvonivec
