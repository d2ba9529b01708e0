// The studio in which the device is drawn: one lamp above left, and what materials make of it.
#pragma once

#include "skin/drawing/light.h"

namespace zvonivec::skin {

/// Polished lacquer of a colour: mostly a mirror of the studio over a dark ground.
Light lacquer(Light ground, Direction surface);

/// Brushed metal: light spread out along the brushing. The grain, -1 to 1, is the brushing's own
/// lightness at that place.
Light brushedMetal(Light tint, Direction surface, double grain);

/// Polished metal: a mirror of the studio, so bright or dark with every turn of the surface.
Light polishedMetal(Light tint, Direction surface);

/// How a rounded edge rises from a rim: 0 at the rim, height from that many pixels inwards on, and
/// ever steeper downwards outside.
double roundedRise(double inwards, double width, double height);
/// A straight bevel with soft ends.
double bevelledRise(double inwards, double width, double height);
/// A round bead of that width along a line, its outer side being at 0.
double beadRise(double inwards, double width, double height);

} // namespace zvonivec::skin
