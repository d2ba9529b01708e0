// The engine's two events.

#include "main_window/frmPlayer.h"

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

void frmPlayer::WMP_MediaError() {
    ShowPlayback(false);
    DoEvents();
    if (Loaded()) {
        boxes_->MsgBox("Nastala chyba při přehrávání souboru - nelze přehrát!", vbCritical,
                       APPLICATION_TITLE);
    }
}

} // namespace zvonivec
