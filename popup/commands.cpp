// The commands of the menu's items and switches.

#include "main_window/frmPlayer.h"
#include "platform/modDeklarace.h"

namespace zvonivec {

void frmPlayer::ShowPopupMenu() {
    const modDeklarace::ScreenPlace pointer = modDeklarace::GetCursorPos();
    // The corner is at the pointer even where the menu then runs off the screen.
    Popup().showAt(static_cast<float>(pointer.x) * TWIPS_PER_PIXEL,
                   static_cast<float>(pointer.y) * TWIPS_PER_PIXEL);
}

void frmPlayer::ShowPopupMenuForKeyboard() {
    const Control* focused = focusedControl();
    const float left = focused != nullptr ? focused->Left() + focused->Width() / 2 : Width() / 2;
    const float top = focused != nullptr ? focused->Top() + focused->Height() / 2 : Height() / 2;
    // Who doesn't use the pointer can't move the window to see the rest of the menu.
    const Place place = placeOnScreen(Popup(), {.left = Left() + left, .top = Top() + top});
    Popup().showAt(place.left, place.top);
    Popup().lightFirst();
}

bool frmPopup::isAvailable(std::int16_t Index) const {
    const bool known = Index >= 0 && static_cast<std::size_t>(Index) < POPUP_ITEM_COUNT;
    return known && Index != itemFirstSeparator && Index != itemSecondSeparator &&
           Index != itemThirdSeparator &&
           lblPopup[static_cast<std::size_t>(Index)].ForeColor() != DISABLED_ITEM_COLOR;
}

void frmPopup::chkPopup_Click(std::int16_t Index) {
    Form_Deactivate();
    if (Index == popupOnTop) {
        placeMainWindowInStack();
    }
    player_.ReportState();
}

void frmPopup::lblPopup_Click(std::int16_t Index) {
    if (!isAvailable(Index)) {
        return;
    }
    Form_Deactivate();
    // An event in its message pass may have ended the program or unloaded the file.
    if (player_.Loaded() && isAvailable(Index)) {
        carryOut(Index);
    }
}

void frmPopup::carryOut(std::int16_t Index) {
    switch (Index) {
    case itemOpen:
        player_.OpenMp3File();
        break;
    case itemProperties:
        player_.ShowPropertiesBox();
        break;
    case itemAbout:
        player_.ShowAboutBox();
        break;
    case itemMinimise:
        player_.setWindowState(WindowState::minimised);
        break;
    case itemQuit:
        player_.CloseApplication();
        break;
    case itemVolumeUp:
        player_.imgVolume_MouseUp({.Button = LEFT_BUTTON});
        break;
    case itemVolumeDown:
        player_.imgVolume_MouseUp({.Button = RIGHT_BUTTON});
        break;
    default: // itemRewind to itemForward
        player_.gClickArmed = true;
        player_.imgButtons_MouseUp(static_cast<std::int16_t>(Index - itemRewind),
                                   {.Button = LEFT_BUTTON});
        break;
    }
}

} // namespace zvonivec
