#include "skin/drawing/device.h"
#include "skin/drawing/lettering.h"
#include "skin/drawing/light.h"
#include "skin/drawing/seat.h"
#include "skin/drawing/studio.h"

#include "main_window/window_outline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace zvonivec::skin {

namespace {

constexpr int WIDTH = 337;
constexpr int HEIGHT = 336;
constexpr double MIDDLE = WIDTH / 2.0;

// --- where things are, in layout pixels ---

/// The outline without its one-pixel steps: what the edge is shaded along.
constexpr std::array<Point, 25> SHADED_OUTLINE{{
    {0, 313.5}, {0, 14},     {2, 11},    {11, 2},      {14, 0},      {29, 0},      {37.5, 8.5},
    {40, 9},    {297, 9},    {300, 6.6}, {306, 0},     {320, 0},     {322, 1},     {332, 12},
    {335, 18},  {337, 22},   {337, 310}, {335.3, 315}, {332.3, 320}, {328.6, 325}, {325.2, 329.6},
    {319, 336}, {17.5, 336}, {8, 327},   {5, 323},
}};

constexpr Box GLASS{69, 44, 268, 99};
constexpr Box DISPLAY{79, 52, 258, 91};
constexpr Box DECK{30, 258, 307, 307};
constexpr Box SLOT{37, 285, 300, 301};
constexpr Box TILE_BED{273, 31, 309, 51};
constexpr Box LOGO{153, 123, 185, 155};
constexpr std::array<Point, 5> BUTTONS{{
    {74.5, 159.5},
    {121.5, 191.5},
    {168.5, 223.5},
    {215.5, 191.5},
    {262.5, 159.5},
}};

/// How wide a side rail is at a height: wide where it ends in the tab, and at the foot.
double railWidth(double y) {
    return 21 + 19.5 * smoothStep(36, 0, y) + 5 * smoothStep(286, 340, y);
}

/// How far a place on a rail lies in from the rail's outer edge. The sides meet in round corners:
/// metal is milled, not folded.
double fromRailEdge(Point p) {
    struct Side {
        Point on;
        Point inwards;
    };
    // Left and right differ: the right tab is narrower and its corner steeper.
    static constexpr std::array<Side, 6> LEFT{{
        {{0, 100}, {1, 0}},
        {{2, 11}, {0.7071, 0.7071}},
        {{20, 0}, {0, 1}},
        {{29, 0}, {-0.7071, 0.7071}},
        {{8, 327}, {0.7809, -0.6247}},
        {{17, 336}, {0, -1}},
    }};
    static constexpr std::array<Side, 6> RIGHT{{
        {{337, 100}, {-1, 0}},
        {{332, 12}, {-0.7399, 0.6727}},
        {{310, 0}, {0, 1}},
        {{306, 0}, {0.7071, 0.7071}},
        {{328.6, 325}, {-0.7986, -0.6018}},
        {{320, 336}, {0, -1}},
    }};
    double inwards = 40;
    for (const Side& side : p.x < MIDDLE ? LEFT : RIGHT) {
        inwards = smoothUnion(inwards, dot(p - side.on, side.inwards), 12);
    }
    return inwards;
}

/// Grooves across the rails, where the fingers hold the device.
double gripDepth(Point p) {
    constexpr double FIRST = 148;
    constexpr double STEP = 6;
    constexpr int COUNT = 9;
    const double fromSide = p.x < MIDDLE ? p.x : WIDTH - p.x;
    double distance = 10;
    for (int i = 0; i < COUNT; ++i) {
        const double y = FIRST + i * STEP;
        distance = std::min(distance, segmentDistance({fromSide, p.y}, {6, y}, {15.5, y}));
    }
    return bevelledRise(1.7 - distance, 1.7, 1.1);
}

/// The plate that carries the buttons, a plectrum: three bulging sides with round corners.
double plateDistance(Point p) {
    constexpr double ARCH = 212;
    constexpr double SIDE = 430;
    constexpr Point OUTWARDS{-0.5628, 0.8266}; // of the lower left side
    constexpr double REACH = 33;
    const double top = circleDistance(p, {MIDDLE, 107 + ARCH}, ARCH);
    const Point toLeft = BUTTONS[1] + OUTWARDS * (REACH - SIDE);
    const double left = circleDistance(p, toLeft, SIDE);
    const double right = circleDistance(p, {WIDTH - toLeft.x, toLeft.y}, SIDE);
    const double lower = -smoothUnion(-left, -right, 30);
    return -smoothUnion(-top, -lower, 34);
}

/// Sound holes beside the tip of the plate, in rows that shift by half a step.
struct Holes {
    std::vector<Point> middles;
    Holes() {
        constexpr double STEP = 7;
        constexpr double ROW = 6;
        for (int row = 0; row < 9; ++row) {
            for (int column = 0; column < 12; ++column) {
                const Point p{38 + column * STEP + (row % 2 == 0 ? 0 : STEP / 2), 200 + row * ROW};
                if (plateDistance(p) > 11 && p.x < 120) {
                    middles.push_back(p);
                    middles.push_back({WIDTH - p.x, p.y});
                }
            }
        }
    }
};

double holeDistance(Point p) {
    static const Holes HOLES;
    if (p.y < 194 || p.y > 256) {
        return 6;
    }
    double nearest = 6;
    for (const Point middle : HOLES.middles) {
        nearest = std::min(nearest, circleDistance(p, middle, 1.7));
    }
    return nearest;
}

/// The distances of a place to everything on the body; negative is inside.
struct Place {
    double edge;
    double rail;
    double glass;
    double display;
    double deck;
    double plate;
    double seat;
    double slot;
    double tiles;
    double holes;
};

Place placeOf(Point p) {
    Place place{};
    place.edge = polygonDistance(p, SHADED_OUTLINE);
    const double fromSide = p.x < MIDDLE ? p.x : WIDTH - p.x;
    place.rail = (fromSide - railWidth(p.y)) * 0.93;
    place.glass = boxDistance(p, GLASS, 9);
    place.display = boxDistance(p, DISPLAY, 3);
    place.deck = boxDistance(p, DECK, 10);
    place.plate = plateDistance(p);
    place.seat = boxDistance(p, {LOGO.left - 1, LOGO.top - 1, LOGO.right + 1, LOGO.bottom + 1}, 8);
    for (const Point button : BUTTONS) {
        place.seat = std::min(place.seat, circleDistance(p, button, SEAT_RADIUS));
    }
    place.slot = boxDistance(p, SLOT, 6);
    place.tiles = boxDistance(p, TILE_BED, 5);
    place.holes = holeDistance(p);
    return place;
}

double heightAt(Point p) {
    const Place at = placeOf(p);
    // The whole shell bulges a little, so that no face is a dead even shade.
    const double dx = (p.x - MIDDLE) / MIDDLE;
    const double dy = (p.y - MIDDLE) / MIDDLE;
    double height = -12 * (dx * dx + dy * dy);
    if (at.rail < 0) {
        return height * 0.3 + roundedRise(fromRailEdge(p), 13, 10) + roundedRise(-at.rail, 7, 3.4) -
               gripDepth(p);
    }
    height += roundedRise(std::min(p.y - 9, HEIGHT - p.y), 9, 4.6) + roundedRise(at.rail, 5, 1.6);
    if (at.plate < 0) {
        height += roundedRise(-at.plate, 2.2, 1.6);
        height -= seatDepth(at.seat);
        return height;
    }
    height -= bevelledRise(1.4 - std::min(at.glass, at.deck), 2.8, 1.7);
    height -= bevelledRise(0.9 - at.slot, 2.4, 2.0);
    height -= bevelledRise(1.0 - at.tiles, 2.4, 1.6);
    height -= bevelledRise(0.7 - at.holes, 1.6, 1.3);
    return height;
}

Light railColour(Point p, const Place& at, Direction n) {
    const double grain = 0.6 * noise(p.x * 1.7, p.y / 26, 11) + 0.4 * noise(p.x * 3.1, p.y / 9, 12);
    Light light = brushedMetal(lightOf(196, 201, 204), n, grain);
    light = light * mixed(1, 0.55, smoothStep(0.3, 1.1, gripDepth(p)));
    // Contact with the seam.
    return light * (0.35 + 0.65 * smoothStep(0, 2.4, -at.rail));
}

Light plateColour(Point p, const Place& at, Direction n) {
    const Point spoke = p - LOGO.centre();
    const double radius = length(spoke) + 0.001;
    const Point along{spoke.x / radius, spoke.y / radius};
    // Turned metal throws the lamp back in two opposite fans.
    const double fan = dot(along, {-0.78, -0.62});
    const double cross = dot(along, {0.62, -0.78});
    const double fan4 = fan * fan * fan * fan;
    const double cross4 = cross * cross * cross * cross;
    const double rings = 0.55 * noise(radius * 1.9, along.x * 1.5 + along.y, 21) +
                         0.45 * noise(radius * 3.7, along.x * 2.5 - along.y, 22);
    Light light = brushedMetal(lightOf(226, 230, 232), n, rings) *
                  (0.64 + 0.52 * fan4 * fan4 + 0.20 * cross4 * cross4);
    // A turned line runs along the rim.
    const double line = std::fabs(at.plate + 4.2);
    light = light * mixed(1, 0.62, smoothStep(0.75, 0.15, line));
    light = mixed(light, seatLight(at.seat, n), smoothStep(SEAT_WALL, SEAT_WALL - 1, at.seat));
    return light * (0.45 + 0.55 * smoothStep(0, 1.2, -at.plate));
}

Light shellColour(Point p, const Place& at, Direction n) {
    const double flakes = noise(p.x * 2.3, p.y * 2.3, 31);
    Light light = lacquer(lightOf(20, 46, 60) * (1 + 0.10 * flakes), n);
    // The plate stands on the shell and shades it, below right.
    const double shaded = smoothStep(7, -3, plateDistance({p.x - 2.6, p.y - 3.6}));
    light = light * (1 - 0.6 * shaded);
    light = light * (0.2 + 0.8 * smoothStep(0, 1.3, at.plate));
    // Openings.
    light = light * mixed(1, 0.12, smoothStep(0.4, -0.6, at.holes));
    light = light * mixed(1, 0.35, smoothStep(0.5, -1.2, at.tiles));
    light = light * (0.3 + 0.7 * smoothStep(0, 1.6, at.rail));
    const double letters = wordmarkDistance(p);
    const double behind = wordmarkDistance({p.x - 0.6, p.y - 0.8});
    light = light * mixed(1, 0.55, smoothStep(0.6, -0.4, behind));
    return mixed(light, lightOf(214, 224, 228), smoothStep(0.5, -0.4, letters));
}

/// Black glass let into the shell, at a distance from its edge.
Light glassColour(Point p, double inwards, Direction n) {
    Light light = lacquer(lightOf(6, 9, 11), n) * 0.7;
    // The studio's window, slanting over all the glass.
    const double across = p.x + 0.55 * p.y;
    const double upper = smoothStep(183, 177, across);
    const double lower = smoothStep(330, 324, across);
    light = light + lightOf(120, 150, 165) * (0.085 * (p.y < MIDDLE ? upper : lower * 0.45));
    return light * (0.12 + 0.88 * smoothStep(0, 1.4, inwards));
}

/// A fine edge around an opening in the glass, catching the light below right.
Light lipLight(Point p, double distance, const Box& box) {
    const double lip = smoothStep(1.6, 0.6, distance) * smoothStep(0.0, 0.5, distance);
    const Point from = p - box.centre();
    const double lit = smoothStep(
        -0.6, 1.0, from.x / (box.right - box.left) + 2 * from.y / (box.bottom - box.top));
    return lightOf(110, 150, 165) * (lip * (0.05 + 0.35 * lit));
}

Drop colourAt(Point p, Direction n) {
    const Place at = placeOf(p);
    Light light;
    if (at.rail < 0) {
        light = railColour(p, at, n);
    } else if (at.plate < 0) {
        light = plateColour(p, at, n);
    } else if (at.display < 0) {
        // The display lies deep: its upper and left rims shade it.
        const double top = smoothStep(0, 3.2, p.y - DISPLAY.top);
        const double left = smoothStep(0, 2.6, p.x - DISPLAY.left);
        light = lightOf(DISPLAY_COLOUR) * (0.28 + 0.72 * top) * (0.45 + 0.55 * left);
    } else if (at.glass < 0) {
        light = glassColour(p, -at.glass, n) + lipLight(p, at.display, DISPLAY);
    } else if (at.deck < 0) {
        light = glassColour(p, -at.deck, n) * mixed(1, 0.25, smoothStep(0.3, -1.2, at.slot)) +
                lipLight(p, at.slot, SLOT);
    } else {
        light = shellColour(p, at, n);
    }
    // Transparency is one bit: instead of blending, the edge goes dark.
    return {light * (0.06 + 0.94 * smoothStep(0.2, 2.8, -at.edge)), 1};
}

/// The pixels of the window, as its shape has them.
Mask outlineMask(int scale) {
    std::vector<WholePoint> corners;
    corners.reserve(WINDOW_OUTLINE.size());
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
    constexpr int SAMPLES = 4;
    const Drawing drawing =
        draw({heightAt, colourAt}, {0, 0}, WIDTH * scale, HEIGHT * scale, scale, SAMPLES);
    // The texts lie on their own plain ground, so this part takes no dithering.
    constexpr Box PLAIN{84, 56, 255, 88};
    Picture fixed(WIDTH * scale, HEIGHT * scale, CLEAR);
    for (int y = static_cast<int>(PLAIN.top) * scale; y < static_cast<int>(PLAIN.bottom) * scale;
         ++y) {
        for (int x = static_cast<int>(PLAIN.left) * scale;
             x < static_cast<int>(PLAIN.right) * scale; ++x) {
            fixed.at(x, y) = DISPLAY_COLOUR;
        }
    }
    return dithered(drawing, fixed, outlineMask(scale), 255);
}

} // namespace zvonivec::skin
