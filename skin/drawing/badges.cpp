#include "skin/drawing/device.h"
#include "skin/drawing/light.h"

namespace zvonivec::skin {

namespace {

Drawing plainBadge(int size) {
    const double unit = size / 32.0;
    Drawing drawing(size, size, Drop{{}, 0});
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const Point p{(x + 0.5) / unit, (y + 0.5) / unit};
            const double d = boxDistance(p, {1, 1, 31, 31}, 6);
            drawing.at(x, y) = {lightOf(10, 120 - p.y * 2, 150 - p.y * 2),
                                clamped(0.5 - d * unit, 0, 1)};
        }
    }
    return drawing;
}

} // namespace

Picture drawLogo(int scale) {
    return rounded(plainBadge(32 * scale));
}

Picture drawIcon(int size, bool softEdges) {
    return softEdges ? roundedWithAlpha(plainBadge(size)) : rounded(plainBadge(size));
}

Picture drawHand(int scale) {
    Drawing drawing(32 * scale, 32 * scale, Drop{{}, 0});
    for (int y = 0; y < 32 * scale; ++y) {
        for (int x = 0; x < 32 * scale; ++x) {
            const Point p{(x + 0.5) / scale, (y + 0.5) / scale};
            const double d = segmentDistance(p, {12.5, 6}, {12.5, 18}) - 2.5;
            drawing.at(x, y) = {d < -1 ? Light{1, 1, 1} : Light{0, 0, 0}, d < 0 ? 1.0 : 0.0};
        }
    }
    return rounded(drawing);
}

} // namespace zvonivec::skin
