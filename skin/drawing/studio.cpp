#include "skin/drawing/studio.h"

namespace zvonivec::skin {

namespace {

/// Where the lamp hangs, seen from the device.
constexpr Direction LAMP{-0.45, -0.66, 0.60};

Direction mirrored(Direction n) {
    return {2 * n.z * n.x, 2 * n.z * n.y, 2 * n.z * n.z - 1};
}

double towardsLamp(Direction n) {
    return n.x * LAMP.x + n.y * LAMP.y + n.z * LAMP.z;
}

} // namespace

Light lacquer(Light ground, Direction surface) {
    const Direction seen = mirrored(surface);
    const double grazing = 1 - surface.z;
    const double mirror = 0.045 + 0.5 * grazing * grazing;
    // A wide lamp with a soft rim, a pale ceiling behind it, and a weak reflection of the table.
    const double lamp = smoothStep(0.55, 0.97, towardsLamp(seen));
    const double ceiling = smoothStep(0.9, -0.9, seen.y);
    const double table = smoothStep(0.3, 1.0, seen.y) * smoothStep(-0.4, 0.9, seen.x);
    const Light reflected = lightOf(196, 228, 255) * (4.0 * lamp) +
                            lightOf(126, 172, 200) * (0.34 * ceiling) +
                            lightOf(90, 150, 170) * (0.35 * table);
    const double diffuse = 0.30 + 0.80 * clamped(towardsLamp(surface), 0, 1);
    return ground * diffuse + reflected * mirror;
}

Light brushedMetal(Light tint, Direction surface, double grain) {
    const Direction seen = mirrored(surface);
    const double lamp = smoothStep(-0.35, 1.0, towardsLamp(seen));
    const double ceiling = smoothStep(1.0, -1.0, seen.y);
    const double amount = 0.10 + 0.22 * ceiling + 0.95 * lamp * lamp;
    return tint * (amount * (1 + 0.16 * grain));
}

Light polishedMetal(Light tint, Direction surface) {
    const Direction seen = mirrored(surface);
    const double lamp = smoothStep(0.30, 0.95, towardsLamp(seen));
    const double ceiling = smoothStep(0.1, -0.9, seen.y);
    // Faces that look down mirror the lit table, faces that look ahead mirror the dark room.
    const double table = smoothStep(0.15, 0.85, seen.y) * smoothStep(-0.9, 0.6, seen.x);
    return tint * (0.05 + 1.15 * lamp + 0.30 * ceiling + 0.24 * table);
}

double roundedRise(double inwards, double width, double height) {
    const double rest = inwards < width ? 1 - inwards / width : 0;
    return height * (1 - rest * rest);
}

double bevelledRise(double inwards, double width, double height) {
    return height * smoothStep(0, width, inwards);
}

double beadRise(double inwards, double width, double height) {
    const double x = 2 * inwards / width - 1;
    return x > -1 && x < 1 ? height * (1 - x * x) : 0;
}

} // namespace zvonivec::skin
