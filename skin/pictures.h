// The names of the pictures, shared by the program that draws them and the one that shows them.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace zvonivec::skin {

struct ListPicture {
    std::string_view file; ///< name under ":/skin/" and in skin/pictures/
    int width;             ///< pixels
    int height;            ///< pixels
};

/// The image list in its order; picture number k is element k - 1.
inline constexpr std::array<ListPicture, 31> LIST_PICTURES{{
    {"01_rewind_normal.gif", 31, 31},    {"02_pause_normal.gif", 31, 31},
    {"03_play_normal.gif", 31, 31},      {"04_stop_normal.gif", 31, 31},
    {"05_forward_normal.gif", 31, 31},   {"06_minimise_normal.gif", 14, 14},
    {"07_close_normal.gif", 14, 14},     {"08_rewind_hover.gif", 31, 31},
    {"09_pause_hover.gif", 31, 31},      {"10_play_hover.gif", 31, 31},
    {"11_stop_hover.gif", 31, 31},       {"12_forward_hover.gif", 31, 31},
    {"13_minimise_hover.gif", 14, 14},   {"14_close_hover.gif", 14, 14},
    {"15_rewind_pressed.gif", 31, 31},   {"16_pause_pressed.gif", 31, 31},
    {"17_play_pressed.gif", 31, 31},     {"18_stop_pressed.gif", 31, 31},
    {"19_forward_pressed.gif", 31, 31},  {"20_minimise_pressed.gif", 14, 14},
    {"21_close_pressed.gif", 14, 14},    {"22_rewind_mark.gif", 12, 6},
    {"23_pause_mark.gif", 8, 8},         {"24_play_mark.gif", 8, 8},
    {"25_stop_mark.gif", 8, 8},          {"26_forward_mark.gif", 12, 6},
    {"27_rewind_disabled.gif", 31, 31},  {"28_pause_disabled.gif", 31, 31},
    {"29_play_disabled.gif", 31, 31},    {"30_stop_disabled.gif", 31, 31},
    {"31_forward_disabled.gif", 31, 31},
}};

inline constexpr ListPicture BODY_PICTURE{"body.gif", 337, 336};
inline constexpr ListPicture VOLUME_PICTURE{"volume.gif", 10, 8};
inline constexpr ListPicture LOGO_PICTURE{"logo.png", 32, 32};
inline constexpr ListPicture ICON_PICTURE{"icon.png", 32, 32};
inline constexpr ListPicture HAND_PICTURE{"hand.png", 32, 32};

/// The pixel of the hand picture that points: the tip of its index finger.
inline constexpr int HAND_HOT_SPOT_X = 12;
inline constexpr int HAND_HOT_SPOT_Y = 4;

/// Icons of the desktop entry, square; icon.png is the one of 32 pixels.
struct IconPicture {
    std::string_view file;
    int size;
};
inline constexpr std::array<IconPicture, 5> ICON_PICTURES{{
    {"icon_16.png", 16},
    {"icon_48.png", 48},
    {"icon_64.png", 64},
    {"icon_128.png", 128},
    {"icon_256.png", 256},
}};

} // namespace zvonivec::skin
