// The values that outlive a run: where they come from at the start.

#include "main_window/frmPlayer.h"

namespace zvonivec {

namespace {

constexpr std::int16_t defaultOnTop = 0;
constexpr std::int16_t defaultRepeat = 1;
constexpr std::int32_t defaultVolume = 50;

} // namespace

void frmPlayer::LoadSettings() {
    setLeft(Screen::Width() / 2 - Width() / 2);
    setTop(Screen::Height() / 2 - Height() / 2);
    Popup().chkPopup[popupOnTop].setValue(defaultOnTop);
    Popup().chkPopup[popupRepeat].setValue(defaultRepeat);
    WMP->settings().setVolume(defaultVolume);
    showVolume();
    settingsLoaded_ = true;
}

void frmPlayer::SaveSettings() {}

} // namespace zvonivec
