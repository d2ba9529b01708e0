// The main window's start-up sequence. The order matters: the settings set the popup's switches,
// and the timer must not tick before the window is visible.

#include "main_window/frmPlayer.h"
#include "platform/modDeklarace.h"
#include "skin/window_outline.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace zvonivec {

namespace {

/// Returns the first two characters of a path: on Windows the drive and its colon.
std::string driveOf(const std::string& folder) {
    std::size_t end = 0;
    for (int characters = 0; end < folder.size(); ++end) {
        const bool startsCharacter = (static_cast<unsigned char>(folder[end]) & 0xC0U) != 0x80U;
        if (startsCharacter && ++characters > 2) {
            break;
        }
    }
    return folder.substr(0, end);
}

modDeklarace::Region windowRegion() {
    std::vector<modDeklarace::Point> vertices;
    std::ranges::transform(skin::WINDOW_OUTLINE, std::back_inserter(vertices),
                           [](const skin::OutlineVertex vertex) {
                               return modDeklarace::Point{vertex.x, vertex.y};
                           });
    return modDeklarace::CreatePolygonRgn(vertices, modDeklarace::WINDING);
}

} // namespace

void frmPlayer::Form_Load() {
    // The player never reads this marker; other programs can see from it that the player runs.
    modDeklarace::CreateMutexA(APPLICATION_TITLE);

    Popup();
    LoadSettings();

    gHoverIndex = NO_BUTTON;
    gClickArmed = false;

    for (std::size_t i = 0; i < BUTTON_COUNT; ++i) {
        const std::size_t offset = i < PLAYBACK_BUTTON_COUNT ? pictureDisabled : pictureNormal;
        imgButtons[i].setPicture(imgList.ListImage(i + offset));
    }

    WMP->settings().setAutoStart(false);
    WMP->setEnableContextMenu(false);

    CD->InitDir = driveOf(programFolder_);

    sendStripToTheRight();
    picDisplay.setWidth(lbl_Info.Width() + 20);

    modDeklarace::SetWindowRgn(hWnd(), windowRegion(), true);

    DoEvents();
    if (!Loaded()) {
        return;
    }
    setVisible(true);
    Timer1.setEnabled(true);
}

} // namespace zvonivec
