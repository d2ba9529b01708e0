// The studio in which the device is drawn: one lamp at the upper left, and the materials.
#pragma once

#include "skin/drawing/light.h"

namespace zvonivec::skin {

/// Returns the light of polished lacquer, which mirrors the studio over a dark ground.
Light lacquer(Light ground, Direction surface);

/// Returns the light of brushed metal, spread out along the brushing. The grain, -1 to 1, is the
/// lightness of the brushing at that point.
Light brushedMetal(Light tint, Direction surface, double grain);

/// Returns the light of polished metal, a mirror of the studio.
Light polishedMetal(Light tint, Direction surface);

/// Returns the height of a rounded edge: 0 at the rim, the full height at the given width inwards,
/// and ever steeper downwards outside.
double roundedRise(double inwards, double width, double height);
/// Returns the height of a straight bevel with soft ends.
double bevelledRise(double inwards, double width, double height);
/// Returns the height of a round bead along a line. Its outer side is at 0.
double beadRise(double inwards, double width, double height);

} // namespace zvonivec::skin
