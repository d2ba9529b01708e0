// The names and sizes of the pictures, shared by the drawing program and the player.
#pragma once

#include "skin/places.h"

#include <array>
#include <cstddef>
#include <optional>
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

/// A picture that fills the place of a control.
consteval ListPicture pictureFor(std::string_view control, std::string_view file) {
    return {file, placeOf(control).width, placeOf(control).height};
}
inline constexpr ListPicture BODY_PICTURE = pictureFor("frmPlayer", "body.gif");
inline constexpr ListPicture VOLUME_PICTURE = pictureFor("imgVolume", "volume.gif");
inline constexpr ListPicture LOGO_PICTURE = pictureFor("imgLogo", "logo.png");
inline constexpr ListPicture ICON_PICTURE{"icon.png", 32, 32};
inline constexpr ListPicture HAND_PICTURE{"hand.png", 32, 32};

/// The same drawings at 2 and 3 pixels to a layout pixel, for screens with more pixels: the body in
/// a file of its own, and a sheet with everything that lies on it. The buttons differ in their
/// symbols alone, so that they take little room in one file.
struct SharpPictures {
    int scale;
    std::string_view body;
    std::string_view sheet;
};
inline constexpr std::array<SharpPictures, 2> SHARP_PICTURES{{
    {2, "body@2x.png", "sheet@2x.png"},
    {3, "body@3x.png", "sheet@3x.png"},
}};

/// The place of a picture on the sheets, in layout pixels.
struct SheetPlace {
    ListPicture picture;
    int left = 0;
    int top = 0;
};
inline constexpr std::size_t SHEET_COUNT = LIST_PICTURES.size() + 3;

/// Returns the places of all pictures on the sheets: round pictures in one row, the others in a
/// second.
constexpr std::array<SheetPlace, SHEET_COUNT> sheetPlaces() {
    std::array<SheetPlace, SHEET_COUNT> places{};
    const int roundHeight = LIST_PICTURES.front().height;
    int roundLeft = 0;
    int otherLeft = 0;
    for (std::size_t i = 0; i < SHEET_COUNT; ++i) {
        const std::array<ListPicture, 3> last{LOGO_PICTURE, VOLUME_PICTURE, HAND_PICTURE};
        const ListPicture picture =
            i < LIST_PICTURES.size() ? LIST_PICTURES[i] : last[i - LIST_PICTURES.size()];
        const bool isRound = picture.height == roundHeight;
        int& left = isRound ? roundLeft : otherLeft;
        places[i] = {picture, left, isRound ? 0 : roundHeight};
        left += picture.width;
    }
    return places;
}
inline constexpr std::array<SheetPlace, SHEET_COUNT> SHEET_PLACES = sheetPlaces();
inline constexpr int SHEET_WIDTH = 20 * 31;
inline constexpr int SHEET_HEIGHT = 31 + 32;

/// The pixel of the hand picture that points: the tip of its index finger.
inline constexpr int HAND_HOT_SPOT_X = 12;
inline constexpr int HAND_HOT_SPOT_Y = 4;

/// Square icons of the desktop entry. The icon of 32 pixels is icon.png.
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

/// The icon of the program's file on Windows, in several sizes.
inline constexpr std::string_view WINDOWS_ICON = "icon.ico";
inline constexpr std::array<int, 5> WINDOWS_ICON_SIZES{16, 32, 48, 64, 256};

} // namespace zvonivec::skin
