// The seats in the plate. The body and the round pictures each draw a part of them, so both take
// them from here.
#pragma once

#include "skin/drawing/light.h"

namespace zvonivec::skin {

/// Radius at which a seat's wall ends at the dark gap around the button.
inline constexpr double SEAT_RADIUS = 15.1;
/// Width of the wall, outwards from there.
inline constexpr double SEAT_WALL = 3.1;

/// Returns the depth of the plate at a distance from the seat's inner edge, negative in the gap.
double seatDepth(double distance);

/// Returns the light of the wall and of the gap within it.
Light seatLight(double distance, Direction surface);

} // namespace zvonivec::skin
