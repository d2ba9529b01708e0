#include "main_window/frmPlayer.h"

#include "main_window/layout.h"
#include "skin/pictures.h"

#include <cstdlib>
#include <initializer_list>
#include <utility>
#include <vector>

namespace zvonivec {

frmPlayer::frmPlayer(Parts parts)
    : Form("frmPlayer", Kind::main, layout::WINDOW_WIDTH, layout::WINDOW_HEIGHT),
      WMP(std::move(parts.engine)), picBGround(*this, "picBGround"),
      picDisplay(picBGround, "picDisplay"), lbl_Info(picDisplay, "lbl_Info"),
      lbl_Info_SH(picDisplay, "lbl_Info_SH"), CD(std::move(parts.dialog)),
      imgVolume(*this, "imgVolume"), lblStatus(*this, "lblStatus"), imgLogo(*this, "imgLogo"),
      imgDisplay_Mark(*this, "imgDisplay_Mark"), imgButtons{Image(*this, "imgButtons_0"),
                                                            Image(*this, "imgButtons_1"),
                                                            Image(*this, "imgButtons_2"),
                                                            Image(*this, "imgButtons_3"),
                                                            Image(*this, "imgButtons_4"),
                                                            Image(*this, "imgButtons_5"),
                                                            Image(*this, "imgButtons_6")},
      Timer1(layout::TIMER_INTERVAL),
      PB(*this, "PB"), lblTime{Label(*this, "lblTime_0"), Label(*this, "lblTime_1")},
      programFolder_(std::move(parts.programFolder)), boxes_(std::move(parts.boxes)) {
    setCaption(APPLICATION_TITLE);
    setIcon(Picture(skin::ICON_PICTURE.file));
    setPicture(Picture(skin::BODY_PICTURE.file));
    for (const skin::ListPicture& picture : skin::LIST_PICTURES) {
        imgList.add(Picture(picture.file));
    }
    PB.setMouseIcon(Picture(skin::HAND_PICTURE.file), skin::HAND_HOT_SPOT_X, skin::HAND_HOT_SPOT_Y);

    std::vector<Control*> controls{&picBGround, &picDisplay, &lbl_Info, &lbl_Info_SH,    &PB,
                                   &imgVolume,  &lblStatus,  &imgLogo,  &imgDisplay_Mark};
    for (Image& button : imgButtons) {
        controls.push_back(&button);
    }
    for (Label& time : lblTime) {
        controls.push_back(&time);
    }
    layOut(layout::controls(), controls);
    showMark(buttonStop, imgButtons[buttonStop].ToolTipText());
    // Along the strip, and then from top to bottom.
    const std::array<Control*, BUTTON_COUNT + 3> tabOrder{
        &imgLogo, &imgButtons[0], &imgButtons[1], &imgButtons[2], &imgButtons[3], &imgButtons[4],
        &PB,      &imgVolume,     &imgButtons[5], &imgButtons[6]};
    setTabOrder(tabOrder);
    connectHandlers();
}

frmPlayer::~frmPlayer() {
    // The engine must raise no event while the controls are being destroyed.
    WMP->PlayStateChange = nullptr;
    WMP->MediaChange = nullptr;
    WMP->MediaError = nullptr;
}

void frmPlayer::connectHandlers() {
    for (std::int16_t i = 0; i < static_cast<std::int16_t>(BUTTON_COUNT); ++i) {
        Image& button = imgButtons[static_cast<std::size_t>(i)];
        button.MouseDown = [this, i](const MouseArgs& mouse) { imgButtons_MouseDown(i, mouse); };
        button.MouseMove = [this, i](const MouseArgs& mouse) { imgButtons_MouseMove(i, mouse); };
        button.MouseUp = [this, i](const MouseArgs& mouse) { imgButtons_MouseUp(i, mouse); };
        button.PressCancelled = [this, i] { imgButtons_PressCancelled(i); };
    }
    MouseMove = [this](const MouseArgs& mouse) { Form_MouseMove(mouse); };
    for (Control* surface :
         std::initializer_list<Control*>{this, &picBGround, &picDisplay, &lbl_Info, &lbl_Info_SH}) {
        surface->MouseDown = [this](const MouseArgs& mouse) { Form_MouseDown(mouse); };
        surface->MouseUp = [this](const MouseArgs& mouse) { Form_MouseUp(mouse); };
    }
    imgLogo.MouseDown = [this](const MouseArgs& mouse) { imgLogo_MouseDown(mouse); };
    imgLogo.MouseUp = [this](const MouseArgs& mouse) { imgLogo_MouseUp(mouse); };
    imgLogo.PressCancelled = [this] { gClickArmed = false; };
    PB.MouseMove = [this](const MouseArgs& mouse) { PB_MouseMove(mouse); };
    PB.MouseUp = [this](const MouseArgs& mouse) { PB_MouseUp(mouse); };
    imgVolume.MouseUp = [this](const MouseArgs& mouse) { imgVolume_MouseUp(mouse); };
    lblStatus.MouseUp = [this](const MouseArgs& mouse) { lblStatus_MouseUp(mouse); };
    connectOtherWays();
    Timer1.Tick = [this] { Timer1_Timer(); };
    WMP->PlayStateChange = [this](PlayState newState) { WMP_PlayStateChange(newState); };
    WMP->MediaChange = [this] { WMP_MediaChange(); };
    WMP->MediaError = [this] { WMP_MediaError(); };
}

void frmPlayer::connectOtherWays() {
    const auto step = [this](int notches, const std::function<void(bool)>& once) {
        for (int i = 0; i < std::abs(notches) && Loaded(); ++i) {
            once(notches > 0);
        }
    };
    MouseWheel = [this, step](int notches) { step(notches, [this](bool up) { stepVolume(up); }); };
    PB.MouseWheel = [this, step](int notches) {
        step(notches, [this](bool up) { SeekBy(up ? SHORT_SEEK : -SHORT_SEEK); });
    };
    takeDroppedFiles();

    Accessible.ShowMenu = [this] { ShowPopupMenuForKeyboard(); };
    PB.setAccessibleName("Pozice");
    PB.Accessible.Increase = [this] { SeekBy(SHORT_SEEK); };
    PB.Accessible.Decrease = [this] { SeekBy(-SHORT_SEEK); };
    PB.Accessible.SetValue = [this](float seconds) { SeekTo(double{seconds}); };
    imgVolume.setAccessibleName("Hlasitost");
    imgVolume.Accessible.Increase = [this] { stepVolume(true); };
    imgVolume.Accessible.Decrease = [this] { stepVolume(false); };
    lblTime[0].setAccessibleName("Čas");
    lblTime[1].setAccessibleName("Délka");
    lbl_Info_SH.setShadow(true);
}

void frmPlayer::ReportState() {
    if (StateChanged) {
        StateChanged();
    }
}

frmPopup& frmPlayer::Popup() {
    if (!popup_) {
        popup_ = std::make_unique<frmPopup>(*this);
    }
    return *popup_;
}

void frmPlayer::Form_SightChanged(bool seen) {
    Timer1.setInterval(seen ? layout::TIMER_INTERVAL : layout::UNSEEN_TIMER_INTERVAL);
}

void frmPlayer::CloseApplication() {
    Popup().Unload();
    Unload();
}

void frmPlayer::Form_Unload() {
    Timer1.setEnabled(false);
    WMP->setURL("");
}

} // namespace zvonivec
