// The two looks of the window.

#include "main_window/frmPlayer.h"
#include "track_info/rules.h"

namespace zvonivec {

void frmPlayer::sendStripToTheRight() {
    picDisplay.setLeft(picBGround.Width() + 100);
}

void frmPlayer::showInfoLine(const std::string& text) {
    lbl_Info.setCaption(text);
    lbl_Info_SH.setCaption(lbl_Info.Caption());
    picDisplay.setWidth(lbl_Info.Width() + 20);
}

void frmPlayer::showLength() {
    lblTime[1].setCaption(WMP->currentMedia().durationString());
    PB.setMax(static_cast<float>(WMP->currentMedia().duration()));
}

bool frmPlayer::passEvents(std::uint32_t call) {
    DoEvents();
    return Loaded() && call == showPlaybackCalls_;
}

void frmPlayer::ShowPlayback(bool playing) {
    // An event in a message pass below may call for the other look or end the program. This call
    // is then overtaken and changes nothing more.
    const std::uint32_t call = ++showPlaybackCalls_;

    Timer1.setEnabled(false);
    for (std::size_t i = 0; i < PLAYBACK_BUTTON_COUNT; ++i) {
        imgButtons[i].setPicture(
            imgList.ListImage(i + (playing ? pictureNormal : pictureDisabled)));
        imgButtons[i].setEnabled(playing);
    }
    if (!playing) {
        Popup().setFileItemsColour(DISABLED_ITEM_COLOR);
        if (awaited_ == Awaited::nothing) {
            WMP->setURL("");
        }
    }
    showMark(playing ? buttonPlay : buttonStop, playing ? "Přehrát" : "Zastavit");
    sendStripToTheRight();
    if (!passEvents(call)) {
        return;
    }

    showInfoLine(playing ? doubledAmpersands(BuildInfoLine()) : WELCOME_TEXT);
    lblTime[0].setCaption("00:00");
    PB.setValue(PB.Min()); // the bar must not show the position of the file before
    if (playing) {
        showLength();
        Popup().setFileItemsColour(ENABLED_ITEM_COLOR);
    }

    lblTime[0].setVisible(playing);
    lblTime[1].setVisible(playing);
    PB.setVisible(playing);
    if (playing) {
        lbl_Info.announce(lbl_Info.accessibleTraits().name);
    }
    ReportState();
    if (passEvents(call)) {
        Timer1.setEnabled(true);
    }
}

} // namespace zvonivec
