// Dragging the window, and the right click that opens the menu.

#include "main_window/frmPlayer.h"
#include "platform/modDeklarace.h"

namespace zvonivec {

void frmPlayer::Form_MouseDown(const MouseArgs& /*mouse*/) {
    modDeklarace::ReleaseCapture();
    modDeklarace::SendMessageA(hWnd(), modDeklarace::SYSTEM_COMMAND, modDeklarace::MOVE_BY_POINTER);
}

void frmPlayer::Form_MouseUp(const MouseArgs& mouse) {
    if (mouse.Button == RIGHT_BUTTON) {
        ShowPopupMenu();
    }
}

} // namespace zvonivec
