// The program's pictures, for comparison with the screen.
#pragma once

#include "tests/support/screenshot.h"

#include <optional>
#include <string>
#include <vector>

class QImage;

namespace support {

/// A picture of skin/pictures. A missing file is an empty picture.
class Picture {
public:
    explicit Picture(const std::string& file);

    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }
    /// Returns nothing where the picture is transparent or ends.
    [[nodiscard]] std::optional<Colour> at(int x, int y) const;
    /// Draws another picture on this one.
    void put(const Picture& picture, Point place);
    struct Style {
        bool bold = false;
        bool endsThere =
            false; ///< the place is the top right corner of the line, not the top left one
    };
    /// Writes a line as the player's labels do.
    void write(const std::string& text, Point place, Colour colour, Style style);
    /// Returns the part in a rectangle.
    [[nodiscard]] Picture part(const Rectangle& place) const;

    static Picture filled(int width, int height, Colour colour);
    /// Returns the scrolling line: text and shadow on the display's colour, as wide as the text.
    static Picture informationStrip(const std::string& text);

private:
    Picture() = default;
    explicit Picture(const QImage& image);
    [[nodiscard]] QImage image() const;

    int width_ = 0;
    int height_ = 0;
    std::vector<std::optional<Colour>> pixels_;
};

/// Returns how many pixels of the picture differ from the screenshot, when its top left corner lies
/// at a point of the screenshot. In an empty picture every pixel differs.
int differentPixels(const Screenshot& screenshot, const Picture& picture, Point place = {});

/// Writes a screenshot as a PNG file.
void save(const Screenshot& screenshot, const std::string& file);

} // namespace support
