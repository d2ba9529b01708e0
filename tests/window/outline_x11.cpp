#include "tests/window/player_test.h"

namespace zvonivec {

QRegion outlineOf(const QWidget& window) {
    return window.mask();
}

} // namespace zvonivec
