// The visible content of the screen.
#pragma once

#include "tests/support/display.h"

#include <cstdint>
#include <string>
#include <vector>

namespace support {

/// 0x00RRGGBB.
using Colour = std::uint32_t;

/// A picture of the screen or of a part of it, without the pointer.
class Screenshot {
public:
    /// Takes the whole screen.
    explicit Screenshot(const Display& display);
    /// Takes a part of the screen. An area outside the screen is cut off, which makes the picture
    /// smaller.
    Screenshot(const Display& display, const Rectangle& place);

    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }
    /// Returns the colour of a pixel, counted from the picture's upper left corner, or black
    /// outside the picture.
    [[nodiscard]] Colour at(int x, int y) const;

    friend bool operator==(const Screenshot&, const Screenshot&) = default;

private:
    int width_ = 0;
    int height_ = 0;
    std::vector<Colour> pixels_;
};

} // namespace support
