// The engine's events.

#include "main_window/frmPlayer.h"
#include "playback/rules.h"
#include "track_info/rules.h"

namespace zvonivec {

void frmPlayer::WMP_PlayStateChange(PlayState newState) {
    if (newState == PlayState::stopped) {
        trackHasStopped();
    }
    ReportState();
}

void frmPlayer::trackHasStopped() {
    if (!gUserStopped) {
        if (Popup().chkPopup[popupRepeat].Value() == 1) {
            WMP->controls().play();
            if (PositionJumped) {
                PositionJumped(); // back to the start, while it goes on playing
            }
        } else {
            showMark(buttonStop, "Zastavit");
            lblTime[0].setCaption("00:00");
            PB.setValue(0);
        }
    }
    gUserStopped = false;
}

void frmPlayer::WMP_MediaChange() {
    if (awaited_ != Awaited::nothing) {
        takeAwaitedFile();
        return;
    }
    // While another file is being opened the display still shows the one before.
    if (!Popup().fileIsLoaded() || !isMp3(WMP->currentMedia().getItemInfo("Filetype"))) {
        return;
    }
    // The forward button leaves the bar at its end.
    const bool atEnd = PB.Value() == PB.Max() && WMP->playState() == PlayState::stopped;
    const std::string text = lbl_Info.Caption();
    showInfoLine(doubledAmpersands(BuildInfoLine()));
    showLength();
    if (atEnd) {
        PB.setValue(PB.Max());
        lblTime[0].setCaption(lblTime[1].Caption());
    }
    if (lbl_Info.Caption() != text) {
        lbl_Info.announce(lbl_Info.accessibleTraits().name);
    }
    ReportState();
}

void frmPlayer::WMP_MediaError() {
    ShowPlayback(false);
    DoEvents();
    if (Loaded()) {
        boxes_->MsgBox("Nastala chyba při přehrávání souboru - nelze přehrát!", vbCritical,
                       APPLICATION_TITLE);
    }
}

} // namespace zvonivec
