// What the screen shows.
#pragma once

#include "tests/support/display.h"

#include <cstdint>
#include <string>
#include <vector>

namespace support {

/// 0x00RRGGBB.
using Colour = std::uint32_t;

/// A picture of the screen or a part of it. The pointer isn't in it.
class Screenshot {
public:
    /// Of the whole screen.
    explicit Screenshot(const Display& display);
    /// Of a part; what lies outside the screen is cut off, and the rest keeps its size.
    Screenshot(const Display& display, const Rectangle& place);

    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }
    /// Counted from the part's top left corner; black outside.
    [[nodiscard]] Colour at(int x, int y) const;

    friend bool operator==(const Screenshot&, const Screenshot&) = default;

private:
    int width_ = 0;
    int height_ = 0;
    std::vector<Colour> pixels_;
};

} // namespace support
