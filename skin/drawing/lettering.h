// The few letters on the device, as strokes.
#pragma once

#include "skin/drawing/geometry.h"

namespace zvonivec::skin {

/// Returns the distance to the maker's name on the body, negative inside, in layout pixels.
double wordmarkDistance(Point p);
/// Returns the distance to the small print at the foot of the body.
double smallPrintDistance(Point p);

/// Returns the distance to "mp3" as it stands in the logo's square of 32 x 32.
double mp3Distance(Point p);

} // namespace zvonivec::skin
