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
    /// Signed distance to the nearest edge, negative inside.
    [[nodiscard]] double distance(Point p) const;

private:
    std::vector<std::vector<Point>> polygons_;
};

/// The symbol of a round button, 0 rewind to 4 forward, in the 31 x 31 square of its picture.
const Figure& buttonSymbol(int button);
/// The display's mark of the same commands, in its square of 8 x 8 or 12 x 6.
const Figure& displayMark(int button);
/// The loudspeaker of 10 x 8 with its three waves: stairs of whole pixels at scale 1, curves above.
const Figure& loudspeaker(int scale);

/// Colours every pixel whose middle lies in the figure.
void paint(Picture& onto, const Figure& figure, Rgba colour, int scale);

/// The same with smooth edges, for pictures of more pixels: on clear pixels over a ground.
void paintSmooth(Picture& onto, const Figure& figure, Rgba colour, Rgba ground, int scale);

} // namespace zvonivec::skin
