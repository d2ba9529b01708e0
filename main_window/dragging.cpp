// Dragging the window, and the right click that opens the menu.

#include "main_window/frmPlayer.h"
#include "platform/modDeklarace.h"

namespace zvonivec {

void frmPlayer::Form_MouseDown(const MouseArgs& /*mouse*/) {
    modDeklarace::ReleaseCapture();
    modDeklarace::SendMessageA(hWnd(), modDeklarace::systemCommand, modDeklarace::moveByPointer);
}

void frmPlayer::Form_MouseUp(const MouseArgs& mouse) {
    if (mouse.Button == rightButton) {
        ShowPopupMenu();
    }
}

} // namespace zvonivec
