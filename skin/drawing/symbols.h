// The symbols on the buttons and on the display, as sharp shapes on the pixel grid.
#pragma once

#include "skin/drawing/geometry.h"
#include "skin/drawing/image.h"

#include <vector>

namespace zvonivec::skin {

/// A flat figure of one colour: the union of its polygons.
class Figure {
public:
    explicit Figure(std::vector<std::vector<Point>> polygons);
    /// Returns the signed distance to the nearest edge, negative inside.
    [[nodiscard]] double distance(Point p) const;

private:
    std::vector<std::vector<Point>> polygons_;
};

/// Returns the symbol of a round button, 0 rewind to 4 forward, in a square of 31 x 31.
const Figure& buttonSymbol(int button);
/// Returns the mark of the same command on the display, of 8 x 8 or 12 x 6.
const Figure& displayMark(int button);
/// Returns the loudspeaker of 10 x 8 with three waves: stairs of whole pixels at scale 1, else
/// curves.
const Figure& loudspeaker(int scale);

/// Paints every pixel whose middle lies in the figure.
void paint(Picture& onto, const Figure& figure, Rgba colour, int scale);

/// Paints with smooth edges, for higher scales. On clear pixels the edges blend with the ground.
void paintSmooth(Picture& onto, const Figure& figure, Rgba colour, Rgba ground, int scale);

} // namespace zvonivec::skin
