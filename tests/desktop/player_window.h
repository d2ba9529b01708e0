// Places in the player's window, in pixels from its top left corner, and what it shows there.
#pragma once

#include "tests/desktop/picture.h"
#include "tests/support/geometry.h"

#include <array>
#include <string>

namespace support::player {

inline constexpr const char* TITLE = "Zvonivec MP3 Player 0.0.7";
inline constexpr const char* DIALOG_TITLE = "Otevřít soubor MP3";
inline constexpr int WIDTH = 337;
inline constexpr int HEIGHT = 336;

inline constexpr const char* WELCOME = "Vítejte v programu Zvonivec MP3 Player 0.0.7";

enum Button { rewind, pause, play, stop, forward, minimise, close };
inline constexpr std::array<Rectangle, 7> BUTTONS{{{59, 144, 31, 31},
                                                   {106, 176, 31, 31},
                                                   {153, 208, 31, 31},
                                                   {200, 176, 31, 31},
                                                   {247, 144, 31, 31},
                                                   {276, 34, 14, 14},
                                                   {292, 34, 14, 14}}};
inline constexpr Rectangle LOGO{153, 123, 32, 32};
inline constexpr Rectangle VOLUME{96, 77, 10, 8};
inline constexpr Rectangle STATUS{111, 74, 90, 14}; ///< room for "100% hlasitost"
inline constexpr Rectangle INFORMATION{86, 57, 164, 15};
inline constexpr Rectangle MARK{232, 77, 12, 8};
inline constexpr Rectangle BAR{40, 288, 257, 10};
inline constexpr Rectangle RUNNING_TIME{40, 264, 60, 14};
inline constexpr Rectangle LENGTH{238, 264, 60, 14};
/// The places of the texts of an idle player.
inline constexpr std::array TEXTS{INFORMATION, STATUS};
/// A point of the bare body.
inline constexpr Point BODY{30, 200};

/// The looks of a button.
enum class Look { normal, hover, pressed, disabled };

/// Returns picture number 1 to 31 of the image list.
Picture listPicture(int number);
Picture buttonPicture(Button button, Look look);
/// Returns the mark of the last playback command, on the body.
Picture markPicture(Button command);

/// Returns the body with all pictures of an idle player, without texts.
Picture idlePicture();

} // namespace support::player
