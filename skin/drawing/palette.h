// The choice of a few colours that stand for many.
#pragma once

#include "skin/drawing/image.h"

#include <cstddef>
#include <vector>

namespace zvonivec::skin {

/// At most count colours that lie close to the given pixels. Whole numbers only, so the choice is
/// the same everywhere.
std::vector<Rgba> choosePalette(const std::vector<Rgba>& pixels, std::size_t count);

/// The palette's entry nearest to a colour whose channels are in 1/unit of a pixel's steps.
Rgba nearestColour(const std::vector<Rgba>& palette, int r, int g, int b, int unit);

} // namespace zvonivec::skin
