// The keyboard. Keys call the handlers that the pointer calls.

#include "main_window/frmPlayer.h"

namespace zvonivec {

namespace {

/// Seconds of a seek by a page key.
constexpr double LONG_SEEK = 30;

/// Whether a key that is held down goes on having its effect.
bool mayRepeat(std::int16_t KeyCode) {
    return KeyCode >= vbKeyPageUp && KeyCode <= vbKeyDown;
}

} // namespace

bool frmPlayer::Form_KeyDown(const KeyArgs& key) {
    // This window keeps the keyboard focus while the menu is shown.
    if (Popup().Visible()) {
        return Popup().Form_KeyDown(key);
    }
    if (gButtonDown) {
        return true; // the release of the button that is held down must find its press
    }
    if (key.Repeated && !mayRepeat(key.KeyCode)) {
        return key.KeyCode != vbKeyTab;
    }
    switch (key.Shift) {
    case 0:
        if (Control* focused = focusedControl();
            focused != nullptr && focusedControlKey(*focused, key.KeyCode)) {
            return true;
        }
        return plainKey(key.KeyCode);
    case SHIFT_KEY:
        if (key.KeyCode == vbKeyF10) {
            ShowPopupMenuForKeyboard();
            return true;
        }
        return false;
    case CONTROL_KEY:
        return controlKey(key.KeyCode);
    case ALT_KEY:
        if (key.KeyCode == vbKeyReturn) {
            Popup().lblPopup_Click(itemProperties);
            return true;
        }
        return false;
    default:
        return false;
    }
}

bool frmPlayer::focusedControlKey(Control& focused, std::int16_t KeyCode) {
    const bool isBar = &focused == &PB;
    const bool isLoudspeaker = &focused == &imgVolume;
    switch (KeyCode) {
    case vbKeySpace:
    case vbKeyReturn:
        if (!isBar) {
            focused.press();
        }
        return true;
    case vbKeyUp:
    case vbKeyDown:
        if (isBar) {
            SeekBy(KeyCode == vbKeyUp ? SHORT_SEEK : -SHORT_SEEK);
        }
        return isBar;
    case vbKeyRight:
    case vbKeyLeft:
        if (isLoudspeaker) {
            stepVolume(KeyCode == vbKeyRight);
        }
        return isLoudspeaker;
    case vbKeyPageUp:
    case vbKeyPageDown:
        if (isBar) {
            SeekBy(KeyCode == vbKeyPageUp ? LONG_SEEK : -LONG_SEEK);
        }
        return isBar;
    case vbKeyHome:
        if (isBar) {
            SeekTo(0);
        }
        return isBar;
    default:
        return false;
    }
}

bool frmPlayer::plainKey(std::int16_t KeyCode) {
    switch (KeyCode) {
    case 'Z':
        PressButton(buttonRewind);
        return true;
    case 'X':
        PressButton(buttonPlay);
        return true;
    case 'C':
        PressButton(buttonPause);
        return true;
    case 'V':
        PressButton(buttonStop);
        return true;
    case 'B':
        PressButton(buttonForward);
        return true;
    case vbKeyUp:
    case vbKeyDown:
        stepVolume(KeyCode == vbKeyUp);
        return true;
    case vbKeyRight:
    case vbKeyLeft:
        SeekBy(KeyCode == vbKeyRight ? SHORT_SEEK : -SHORT_SEEK);
        return true;
    case vbKeyMenu:
        ShowPopupMenuForKeyboard();
        return true;
    case vbKeyF1:
        ShowAboutBox();
        return true;
    default:
        return false;
    }
}

bool frmPlayer::controlKey(std::int16_t KeyCode) {
    switch (KeyCode) {
    case 'O':
        OpenMp3File();
        return true;
    case 'T':
        Popup().chkPopup[popupOnTop].press();
        return true;
    case 'R':
        Popup().chkPopup[popupRepeat].press();
        return true;
    case 'M':
        PressButton(buttonMinimise);
        return true;
    case 'Q':
        CloseApplication();
        return true;
    default:
        return false;
    }
}

void frmPlayer::stepVolume(bool up) {
    imgVolume_MouseUp({.Button = up ? LEFT_BUTTON : RIGHT_BUTTON});
}

} // namespace zvonivec
