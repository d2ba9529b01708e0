// Picture files as they are written: palettes and transparent entries too, which a decoder hides.
#pragma once

#include <string>

namespace skin_test {

/// What the bytes of a GIF file say.
struct GifFacts {
    bool isGif = false;
    int width = 0;
    int height = 0;
    int paletteSize = 0;
    int images = 0;
    int transparentEntries = 0;
    /// Everything but the compressed pixels: sizes, palette, transparent entry.
    std::string head;
};
GifFacts readGif(const std::string& path);

/// Compares pixels, palettes and transparency of two picture files, each image of an icon file by
/// itself. Returns what differs first, or nothing. How the files are compressed doesn't count.
std::string differenceOf(const std::string& path, const std::string& other);

} // namespace skin_test
