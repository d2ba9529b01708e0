// Pictures in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zvonivec::skin {

/// A pixel as files hold it. Alpha is 0 or 255 wherever a picture goes into a GIF.
struct Rgba {
    std::uint8_t r = 0;
    std::uint8_t g = 0;
    std::uint8_t b = 0;
    std::uint8_t a = 255;
    friend bool operator==(const Rgba&, const Rgba&) = default;
};

/// The fully transparent pixel.
inline constexpr Rgba CLEAR{0, 0, 0, 0};

/// Rows of pixels from the top left.
template<typename Pixel>
class Grid {
public:
    Grid() = default;
    Grid(int width, int height, Pixel fill = Pixel{})
        : width_(width), height_(height),
          pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), fill) {}
    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }
    [[nodiscard]] const Pixel& at(int x, int y) const { return pixels_[offset(x, y)]; }
    Pixel& at(int x, int y) { return pixels_[offset(x, y)]; }
    [[nodiscard]] const std::vector<Pixel>& pixels() const { return pixels_; }

private:
    [[nodiscard]] std::size_t offset(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
               static_cast<std::size_t>(x);
    }
    int width_ = 0;
    int height_ = 0;
    std::vector<Pixel> pixels_;
};

using Picture = Grid<Rgba>;
/// Which pixels of a picture are drawn (1) and which stay clear (0).
using Mask = Grid<std::uint8_t>;

/// Puts one picture over another. Clear pixels change nothing.
void paste(Picture& onto, const Picture& picture, int left, int top);

} // namespace zvonivec::skin
