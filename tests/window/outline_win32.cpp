#include "tests/window/player_test.h"

#include <windows.h>

namespace zvonivec {

QRegion outlineOf(const QWidget& window) {
    const HRGN shape = CreateRectRgn(0, 0, 0, 0);
    QRegion result;
    if (GetWindowRgn(reinterpret_cast<HWND>(window.internalWinId()), shape) != ERROR) {
        result = QRegion::fromHRGN(shape);
    }
    DeleteObject(shape);
    return result;
}

} // namespace zvonivec
