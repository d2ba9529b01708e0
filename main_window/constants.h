// Texts, numbers and colours that more than one part of the program shares.
#pragma once

#include "controls/units.h"
#include "version.h"

#include <cstddef>
#include <cstdint>

namespace zvonivec {

inline constexpr const char* APPLICATION_TITLE = "Zvonivec MP3 Player " ZVONIVEC_VERSION;
inline constexpr const char* APPLICATION_NAME = "Zvonivec MP3 Player";
inline constexpr const char* WELCOME_TEXT =
    "Vítejte v programu Zvonivec MP3 Player " ZVONIVEC_VERSION;

/// Seconds of a seek by an arrow key or by a notch of the wheel.
inline constexpr double SHORT_SEEK = 5;

/// Value of gHoverIndex when no button shows its hover picture.
inline constexpr std::int16_t NO_BUTTON = 10;

/// The buttons of the strip.
enum ButtonIndex : std::int16_t {
    buttonRewind = 0,
    buttonPause = 1,
    buttonPlay = 2,
    buttonStop = 3,
    buttonForward = 4,
    buttonMinimise = 5,
    buttonClose = 6,
};
inline constexpr std::size_t BUTTON_COUNT = 7;
/// Buttons 0 to 4 need a file, and they alone have a display mark and a disabled picture.
inline constexpr std::size_t PLAYBACK_BUTTON_COUNT = 5;

/// Number of a button's picture in the image list, less the button's index.
enum PictureOffset : std::size_t {
    pictureNormal = 1,
    pictureHover = 8,
    picturePressed = 15,
    pictureMark = 22,
    pictureDisabled = 27,
};

/// Colours of the popup menu. An item is available unless it has DISABLED_ITEM_COLOR. Item 1's
/// colour is also the program's only record of whether a file is loaded.
inline constexpr Colour MENU_BACK_COLOR = 0xC0A000;
inline constexpr Colour HIGHLIGHT_BACK_COLOR = 0xC0C000;
inline constexpr Colour ENABLED_ITEM_COLOR = 0x80FFFF;
inline constexpr Colour DISABLED_ITEM_COLOR = 0x00C0C0;

} // namespace zvonivec
