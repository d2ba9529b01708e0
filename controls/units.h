// Units and colours of the forms.
#pragma once

#include <cmath>
#include <cstdint>

namespace zvonivec {

/// Twips to a logical pixel. Places and sizes are in twips, relative to the container.
inline constexpr float TWIPS_PER_PIXEL = 15.0F;

/// Returns the nearest whole pixel. Halves are rounded up, so that a control that moves by whole
/// pixels never jumps.
[[nodiscard]] inline int toPixels(float twips) {
    return static_cast<int>(std::floor(twips / TWIPS_PER_PIXEL + 0.5F));
}

[[nodiscard]] inline float toTwips(int pixels) {
    return static_cast<float>(pixels) * TWIPS_PER_PIXEL;
}

/// 0x00BBGGRR.
using Colour = std::uint32_t;

[[nodiscard]] constexpr Colour rgb(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
    return blue << 16U | green << 8U | red;
}

} // namespace zvonivec
