// The picture buttons and the logo.

#include "main_window/frmPlayer.h"

#include <utility>

namespace zvonivec {

void frmPlayer::imgButtons_MouseDown(std::int16_t Index, const MouseArgs& mouse) {
    if (mouse.Button != 1) {
        return;
    }
    const auto index = static_cast<std::size_t>(Index);
    imgButtons[index].setPicture(imgList.ListImage(index + picturePressed));
    gButtonDown = true;
    gClickArmed = true;
}

void frmPlayer::imgButtons_MouseMove(std::int16_t Index, const MouseArgs& /*mouse*/) {
    if (gButtonDown) {
        return;
    }
    const auto index = static_cast<std::size_t>(Index);
    imgButtons[index].setPicture(imgList.ListImage(index + pictureHover));
    gHoverIndex = Index;
}

void frmPlayer::Form_MouseMove(const MouseArgs& /*mouse*/) {
    if (gHoverIndex == NO_BUTTON || gButtonDown) {
        return;
    }
    const auto index = static_cast<std::size_t>(gHoverIndex);
    if (imgButtons[index].Enabled()) { // an event may have disabled it, with its own picture
        imgButtons[index].setPicture(imgList.ListImage(index + pictureNormal));
    }
    gHoverIndex = NO_BUTTON;
}

void frmPlayer::imgButtons_MouseUp(std::int16_t Index, const MouseArgs& mouse) {
    const bool known = Index >= 0 && static_cast<std::size_t>(Index) < BUTTON_COUNT;
    if (mouse.Button == 1 && gClickArmed) {
        // An event may have disabled the button while it was held down.
        if (known && imgButtons[static_cast<std::size_t>(Index)].Enabled()) {
            Image& button = imgButtons[static_cast<std::size_t>(Index)];
            button.setPicture(imgList.ListImage(static_cast<std::size_t>(Index) + pictureNormal));
            if (Index != buttonMinimise && Index != buttonClose) {
                showMark(Index, button.ToolTipText());
            }
            carryOut(Index);
        }
        gClickArmed = false;
    }
    gButtonDown = false;
}

void frmPlayer::PressButton(std::int16_t Index) {
    // The pointer may hold a button down, whose release must find what its press has set.
    const bool armed = std::exchange(gClickArmed, true);
    const bool down = gButtonDown;
    imgButtons_MouseUp(Index, {.Button = LEFT_BUTTON});
    gClickArmed = armed;
    gButtonDown = down;
}

void frmPlayer::imgButtons_PressCancelled(std::int16_t Index) {
    const auto index = static_cast<std::size_t>(Index);
    if (gButtonDown && imgButtons[index].Enabled()) {
        imgButtons[index].setPicture(imgList.ListImage(index + pictureNormal));
    }
    gClickArmed = false;
    gButtonDown = false;
}

void frmPlayer::carryOut(std::int16_t Index) {
    switch (Index) {
    case buttonRewind:
    case buttonStop:
        stopAt(PB.Min(), "00:00");
        break;
    case buttonPause:
        WMP->controls().pause();
        break;
    case buttonPlay:
        if (PB.Value() == PB.Max()) {
            PB.setValue(PB.Min());
        }
        WMP->controls().play();
        break;
    case buttonForward:
        stopAt(PB.Max(), lblTime[1].Caption());
        break;
    case buttonMinimise:
        setWindowState(WindowState::minimised);
        break;
    case buttonClose:
        CloseApplication();
        break;
    default:
        break;
    }
}

void frmPlayer::stopAt(float barValue, const std::string& time) {
    PB.setValue(barValue);
    gUserStopped = true;
    WMP->controls().stop();
    lblTime[0].setCaption(time);
}

void frmPlayer::showMark(std::int16_t Index, const std::string& toolTipText) {
    imgDisplay_Mark.setPicture(imgList.ListImage(static_cast<std::size_t>(Index) + pictureMark));
    imgDisplay_Mark.setToolTipText(toolTipText);
}

void frmPlayer::imgLogo_MouseDown(const MouseArgs& /*mouse*/) {
    gClickArmed = true;
}

void frmPlayer::imgLogo_MouseUp(const MouseArgs& mouse) {
    if (mouse.Button == 1 && gClickArmed) {
        gClickArmed = false;
        OpenMp3File();
    }
}

} // namespace zvonivec
