// The volume: the loudspeaker picture and the status text.

#include "main_window/frmPlayer.h"

namespace zvonivec {

namespace {

/// Percentage points of one click.
constexpr std::int32_t VOLUME_STEP = 10;

} // namespace

void frmPlayer::imgVolume_MouseUp(const MouseArgs& mouse) {
    PlayerEngine::Settings& settings = WMP->settings();
    settings.setVolume(settings.volume() + (mouse.Button == 1 ? VOLUME_STEP : -VOLUME_STEP));
    showVolume();
    DoEvents();
}

void frmPlayer::lblStatus_MouseUp(const MouseArgs& mouse) {
    imgVolume_MouseUp(mouse);
}

void frmPlayer::SetVolume(std::int32_t percent) {
    WMP->settings().setVolume(percent);
    showVolume();
}

void frmPlayer::showVolume() {
    imgVolume.setTag(std::to_string(WMP->settings().volume()));
    lblStatus.setCaption(imgVolume.Tag() + "% hlasitost");
    const std::int32_t percent = WMP->settings().volume();
    imgVolume.setAccessibleRange({.value = static_cast<float>(percent),
                                  .minimum = 0,
                                  .maximum = 100,
                                  .text = imgVolume.Tag() + " %"});
    ReportState();
}

} // namespace zvonivec
