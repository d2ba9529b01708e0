// The timer's tick, and the handlers of the progress bar.

#include "main_window/frmPlayer.h"
#include "playback/rules.h"

namespace zvonivec {

namespace {

/// Twips that the strip moves to the left at each tick.
constexpr float STRIP_STEP = 30;

} // namespace

void frmPlayer::Timer1_Timer() {
    picDisplay.setLeft(picDisplay.Left() - STRIP_STEP);
    if (picDisplay.Left() + picDisplay.Width() < 0) {
        sendStripToTheRight();
    }
    DoEvents();
    if (WMP->playState() == PlayState::playing) {
        showPosition();
        DoEvents();
    }
}

void frmPlayer::PB_MouseMove(const MouseArgs& mouse) {
    if (!Popup().fileIsLoaded()) {
        return;
    }
    if (const auto time = timeUnderPointer(mouse.X, PB.Width(), PB.Max())) {
        PB.setToolTipText(*time);
    }
}

void frmPlayer::PB_MouseUp(const MouseArgs& mouse) {
    if (const auto target = seekTarget(mouse.X, PB.Width(), PB.Max())) {
        WMP->controls().setCurrentPosition(*target);
    }
    DoEvents();
    showPosition();
    DoEvents();
}

void frmPlayer::showPosition() {
    lblTime[0].setCaption(WMP->controls().currentPositionString());
    PB.setValue(static_cast<float>(WMP->controls().currentPosition()));
}

} // namespace zvonivec
