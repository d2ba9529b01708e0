#include "skin/drawing/device.h"
#include "skin/drawing/light.h"

#include "main_window/window_outline.h"

#include <vector>

namespace zvonivec::skin {

namespace {

constexpr int WIDTH = 337;
constexpr int HEIGHT = 336;

/// The pixels of the window, as its shape has them.
Mask outlineMask(int scale) {
    std::vector<WholePoint> corners;
    for (const OutlineVertex vertex : WINDOW_OUTLINE) {
        corners.push_back({vertex.x * scale, vertex.y * scale});
    }
    Mask mask(WIDTH * scale, HEIGHT * scale, 0);
    for (int y = 0; y < mask.height(); ++y) {
        for (int x = 0; x < mask.width(); ++x) {
            mask.at(x, y) = contains(corners, {x, y}) ? 1 : 0;
        }
    }
    return mask;
}

} // namespace

Picture drawBody(int scale) {
    const Scene scene{
        [](Point) { return 0.0; },
        [](Point p, Direction) {
            return Drop{lightOf(60 - p.y / 10, 66 - p.y / 10, 72 - p.y / 10), 1};
        },
    };
    const Drawing drawing = draw(scene, {0, 0}, WIDTH * scale, HEIGHT * scale, scale, 1);
    Picture fixed(WIDTH * scale, HEIGHT * scale, CLEAR);
    for (int y = 52 * scale; y < 91 * scale; ++y) {
        for (int x = 80 * scale; x < 258 * scale; ++x) {
            fixed.at(x, y) = DISPLAY_COLOUR;
        }
    }
    return dithered(drawing, fixed, outlineMask(scale), 255);
}

} // namespace zvonivec::skin
