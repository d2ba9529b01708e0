// Draws every picture of the player's skin into a folder.
//
//   draw_skin FOLDER                     all pictures, as skin/pictures/ holds them
//   draw_skin --preview FILE.png [N]     the whole player at scale N (1 to 4)
#include "skin/drawing/device.h"
#include "skin/drawing/gif_writer.h"
#include "skin/drawing/ico_writer.h"
#include "skin/drawing/light.h"
#include "skin/drawing/png_writer.h"
#include "skin/pictures.h"
#include "skin/places.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace zvonivec::skin;

bool writeBytes(const std::string& path, const std::optional<std::string>& bytes) {
    if (!bytes) {
        std::fprintf(stderr, "draw_skin: cannot encode %s\n", path.c_str());
        return false;
    }
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes->data(), static_cast<std::streamsize>(bytes->size()));
    file.close();
    if (!file) {
        std::fprintf(stderr, "draw_skin: cannot write %s\n", path.c_str());
        return false;
    }
    return true;
}

bool writePicture(const std::string& path, const Picture& picture) {
    return writeBytes(path, path.ends_with(".png") ? pngBytes(picture) : gifBytes(picture));
}

/// Draws picture number 1 to 31 of the image list.
Picture drawListPicture(int number, int scale) {
    constexpr int roundButtons = 5;
    const auto button = [&](int index, ButtonState state) {
        return index < roundButtons ? drawRoundButton(index, state, scale)
                                    : drawTile(index, state, scale);
    };
    if (number >= 27) {
        return button(number - 27, ButtonState::disabled);
    }
    if (number >= 22) {
        return drawDisplayMark(number - 22, scale);
    }
    if (number >= 15) {
        return button(number - 15, ButtonState::pressed);
    }
    if (number >= 8) {
        return button(number - 8, ButtonState::hover);
    }
    return button(number - 1, ButtonState::normal);
}

/// Draws everything that lies on the body into one picture.
Picture drawSheet(int scale) {
    Picture sheet(SHEET_WIDTH * scale, SHEET_HEIGHT * scale, CLEAR);
    for (std::size_t i = 0; i < SHEET_PLACES.size(); ++i) {
        const SheetPlace& place = SHEET_PLACES.at(i);
        const std::string_view file = place.picture.file;
        const Picture picture = file == LOGO_PICTURE.file     ? drawLogo(scale)
                                : file == VOLUME_PICTURE.file ? drawLoudspeaker(scale)
                                : file == HAND_PICTURE.file
                                    ? drawHand(scale)
                                    : drawListPicture(static_cast<int>(i) + 1, scale);
        paste(sheet, picture, place.left * scale, place.top * scale);
    }
    // Without dithering the buttons keep their common pixels, and the palette has the exact colours
    // of the symbols.
    Picture symbols(sheet.width(), sheet.height(), CLEAR);
    Mask mask(sheet.width(), sheet.height(), 0);
    for (int y = 0; y < sheet.height(); ++y) {
        for (int x = 0; x < sheet.width(); ++x) {
            const Rgba& pixel = sheet.at(x, y);
            mask.at(x, y) = pixel.a == 0 ? 0 : 1;
            if (pixel == MARK_COLOUR ||
                std::ranges::find(SYMBOL_COLOURS, pixel) != SYMBOL_COLOURS.end()) {
                symbols.at(x, y) = pixel;
            }
        }
    }
    return dithered(drawingOf(sheet), symbols, mask, 255, 0);
}

bool drawAll(const std::string& folder) {
    if (!std::filesystem::is_directory(folder)) {
        std::fprintf(stderr, "draw_skin: no folder %s\n", folder.c_str());
        return false;
    }
    const auto write = [&](std::string_view file, const Picture& picture) {
        return writePicture(folder + "/" + std::string(file), picture);
    };
    bool good = write(BODY_PICTURE.file, drawBody(1));
    for (std::size_t i = 0; i < LIST_PICTURES.size(); ++i) {
        good = write(LIST_PICTURES.at(i).file, drawListPicture(static_cast<int>(i) + 1, 1)) && good;
    }
    good = write(VOLUME_PICTURE.file, drawLoudspeaker(1)) && good;
    good = write(LOGO_PICTURE.file, drawLogo(1)) && good;
    good = write(HAND_PICTURE.file, drawHand(1)) && good;
    good = write(ICON_PICTURE.file, drawIcon(ICON_PICTURE.width, false)) && good;
    for (const IconPicture& icon : ICON_PICTURES) {
        good = write(icon.file, drawIcon(icon.size, true)) && good;
    }
    std::vector<Picture> windowsIcon;
    windowsIcon.reserve(WINDOWS_ICON_SIZES.size());
    for (const int size : WINDOWS_ICON_SIZES) {
        windowsIcon.push_back(drawIcon(size, size != ICON_PICTURE.width));
    }
    good = writeBytes(folder + "/" + std::string(WINDOWS_ICON), icoBytes(windowsIcon)) && good;
    for (const SharpPictures& sharp : SHARP_PICTURES) {
        good = write(sharp.body, drawBody(sharp.scale)) && good;
        good = write(sharp.sheet, drawSheet(sharp.scale)) && good;
    }
    return good;
}

/// Draws the whole player, with a button in each state.
Picture drawPreview(int scale) {
    struct Placed {
        int number;
        Place place;
    };
    constexpr std::array<Placed, 8> pictures{{
        {1, placeOf("imgButtons_0")},
        {9, placeOf("imgButtons_1")},
        {17, placeOf("imgButtons_2")},
        {4, placeOf("imgButtons_3")},
        {31, placeOf("imgButtons_4")},
        {6, placeOf("imgButtons_5")},
        {7, placeOf("imgButtons_6")},
        {24, placeOf("imgDisplay_Mark")},
    }};
    Picture preview = drawBody(scale);
    const auto put = [&](const Picture& picture, const Place& place) {
        paste(preview, picture, place.left * scale, place.top * scale);
    };
    for (const Placed& placed : pictures) {
        put(drawListPicture(placed.number, scale), placed.place);
    }
    put(drawLogo(scale), placeOf("imgLogo"));
    put(drawLoudspeaker(scale), placeOf("imgVolume"));
    return preview;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() == 1 && !arguments[0].starts_with("-")) {
        return drawAll(arguments[0]) ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    if ((arguments.size() == 2 || arguments.size() == 3) && arguments[0] == "--preview") {
        const int scale = arguments.size() == 3 ? std::atoi(arguments[2].c_str()) : 1;
        if (scale >= 1 && scale <= 4) {
            return writePicture(arguments[1], drawPreview(scale)) ? EXIT_SUCCESS : EXIT_FAILURE;
        }
    }
    std::fputs("usage: draw_skin FOLDER\n       draw_skin --preview FILE.png [1..4]\n", stderr);
    return EXIT_FAILURE;
}
