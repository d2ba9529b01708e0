// The seats in the plate, drawn partly by the body and partly by the round pictures on it. Both
// draw them from here, so that a picture's rim goes on where the body ends.
#pragma once

#include "skin/drawing/light.h"

namespace zvonivec::skin {

/// Where a seat's wall ends at the dark gap around the button.
inline constexpr double SEAT_RADIUS = 15.1;
/// How far the wall reaches outwards from there.
inline constexpr double SEAT_WALL = 3.1;

/// How deep the plate lies at a distance from the seat's inner edge, negative being the gap.
double seatDepth(double distance);

/// The light of the wall and of the gap within it.
Light seatLight(double distance, Direction surface);

} // namespace zvonivec::skin
