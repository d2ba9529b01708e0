// The timer's tick, and the handlers of the progress bar.

#include "main_window/frmPlayer.h"
#include "playback/rules.h"

#include <algorithm>

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
    if (PositionJumped) {
        PositionJumped();
    }
    DoEvents();
}

void frmPlayer::SeekTo(double seconds) {
    if (PB.Visible()) {
        PB_MouseUp({.Button = LEFT_BUTTON, .X = placeOfPosition(seconds, PB.Width(), PB.Max())});
    }
}

void frmPlayer::SeekBy(double seconds) {
    // A stopped track's bar may stand at the end, where the forward button has sent it.
    const bool stopped = WMP->playState() == PlayState::stopped;
    SeekTo((stopped ? double{PB.Value()} : WMP->controls().currentPosition()) + seconds);
}

void frmPlayer::showPosition() {
    lblTime[0].setCaption(WMP->controls().currentPositionString());
    PB.setValue(std::min(static_cast<float>(WMP->controls().currentPosition()), PB.Max()));
}

} // namespace zvonivec
