// The choice of a palette.
#pragma once

#include "skin/drawing/image.h"

#include <cstddef>
#include <vector>

namespace zvonivec::skin {

/// Returns at most count colours that lie close to the given pixels. Calculates in whole numbers
/// only, so that every machine chooses the same.
std::vector<Rgba> choosePalette(const std::vector<Rgba>& pixels, std::size_t count);

/// Returns the palette's entry nearest to a colour, whose channels are in 1/unit of a pixel's
/// steps.
Rgba nearestColour(const std::vector<Rgba>& palette, int r, int g, int b, int unit);

} // namespace zvonivec::skin
