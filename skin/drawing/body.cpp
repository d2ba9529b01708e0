#include "skin/drawing/device.h"
#include "skin/drawing/lettering.h"
#include "skin/drawing/light.h"
#include "skin/drawing/seat.h"
#include "skin/drawing/studio.h"
#include "skin/pictures.h"
#include "skin/places.h"
#include "skin/window_outline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace zvonivec::skin {

namespace {

constexpr int WIDTH = BODY_PICTURE.width;
constexpr int HEIGHT = BODY_PICTURE.height;
constexpr double MIDDLE = WIDTH / 2.0;

// --- where things are, in layout pixels ---

constexpr Box boxOf(const Place& place) {
    return {static_cast<double>(place.left), static_cast<double>(place.top),
            static_cast<double>(place.left + place.width),
            static_cast<double>(place.top + place.height)};
}

constexpr Box around(const Box& box, double gap) {
    return {box.left - gap, box.top - gap, box.right + gap, box.bottom + gap};
}

/// The outline without its one-pixel steps. The shade of the edge follows it.
constexpr std::array<Point, 25> SHADED_OUTLINE{{
    {0, 313.5}, {0, 14},     {2, 11},    {11, 2},      {14, 0},      {29, 0},      {37.5, 8.5},
    {40, 9},    {297, 9},    {300, 6.6}, {306, 0},     {320, 0},     {322, 1},     {332, 12},
    {335, 18},  {337, 22},   {337, 310}, {335.3, 315}, {332.3, 320}, {328.6, 325}, {325.2, 329.6},
    {319, 336}, {17.5, 336}, {8, 327},   {5, 323},
}};

constexpr Box GLASS{69, 44, 268, 99};
constexpr Box DISPLAY{79, 52, 258, 91};
constexpr Box DECK{30, 258, 307, 307};
/// The slot of the bar and the bed of the tiles leave a gap around them.
constexpr Box SLOT = around(boxOf(placeOf("PB")), 3);
constexpr Box MINIMISE = boxOf(placeOf("imgButtons_5"));
constexpr Box CLOSE = boxOf(placeOf("imgButtons_6"));
constexpr Box TILE_BED = around({MINIMISE.left, MINIMISE.top, CLOSE.right, CLOSE.bottom}, 2);
/// Width of the steel frames around the glasses and the bed of the tiles.
constexpr double FRAME = 3;
/// Seams between the rails and their ends, which are separate parts.
constexpr double UPPER_SEAM = 54;
constexpr double LOWER_SEAM = 290;
constexpr Box LOGO = boxOf(placeOf("imgLogo"));
/// The middles of the round buttons.
constexpr std::array<Point, 5> BUTTONS{
    boxOf(placeOf("imgButtons_0")).centre(), boxOf(placeOf("imgButtons_1")).centre(),
    boxOf(placeOf("imgButtons_2")).centre(), boxOf(placeOf("imgButtons_3")).centre(),
    boxOf(placeOf("imgButtons_4")).centre(),
};

/// Returns the width of a side rail at a height. It is greater at the tab and at the foot.
double railWidth(double y) {
    return 21 + 19.5 * smoothStep(36, 0, y) + 5 * smoothStep(286, 340, y);
}

/// Returns the distance from a rail's outer edge inwards. The sides meet in round corners, because
/// the metal is milled, not folded.
double fromRailEdge(Point p) {
    struct Side {
        Point on;
        Point inwards;
    };
    // Left and right differ: the right tab is narrower and its corner steeper.
    static constexpr std::array<Side, 6> left{{
        {{0, 100}, {1, 0}},
        {{2, 11}, {0.7071, 0.7071}},
        {{20, 0}, {0, 1}},
        {{29, 0}, {-0.7071, 0.7071}},
        {{8, 327}, {0.7809, -0.6247}},
        {{17, 336}, {0, -1}},
    }};
    static constexpr std::array<Side, 6> right{{
        {{337, 100}, {-1, 0}},
        {{332, 12}, {-0.7399, 0.6727}},
        {{310, 0}, {0, 1}},
        {{306, 0}, {0.7071, 0.7071}},
        {{328.6, 325}, {-0.7986, -0.6018}},
        {{320, 336}, {0, -1}},
    }};
    double inwards = 40;
    for (const Side& side : p.x < MIDDLE ? left : right) {
        inwards = smoothUnion(inwards, dot(p - side.on, side.inwards), 12);
    }
    return inwards;
}

/// Returns the depth of the grooves across the rails, where the fingers hold the device.
double gripDepth(Point p) {
    constexpr double first = 148;
    constexpr double step = 6;
    constexpr int count = 9;
    const double fromSide = p.x < MIDDLE ? p.x : WIDTH - p.x;
    double distance = 10;
    for (int i = 0; i < count; ++i) {
        const double y = first + i * step;
        distance = std::min(distance, segmentDistance({fromSide, p.y}, {6, y}, {15.5, y}));
    }
    return bevelledRise(1.7 - distance, 1.7, 1.1);
}

/// Returns the distance to the plate that carries the buttons. The plate is a plectrum: three
/// bulging sides with round corners.
double plateDistance(Point p) {
    constexpr double arch = 212;
    constexpr double side = 430;
    constexpr Point outwards{-0.5628, 0.8266}; // of the lower left side
    constexpr double reach = 33;
    const double top = circleDistance(p, {MIDDLE, 107 + arch}, arch);
    const Point toLeft = BUTTONS[1] + outwards * (reach - side);
    const double left = circleDistance(p, toLeft, side);
    const double right = circleDistance(p, {WIDTH - toLeft.x, toLeft.y}, side);
    const double lower = -smoothUnion(-left, -right, 30);
    return -smoothUnion(-top, -lower, 34);
}

/// Sound holes beside the tip of the plate. Every second row is shifted by half a step.
struct Holes {
    std::vector<Point> middles;
    Holes() {
        constexpr double step = 7;
        constexpr double rowHeight = 6;
        for (int row = 0; row < 9; ++row) {
            for (int column = 0; column < 12; ++column) {
                const Point p{38 + column * step + (row % 2 == 0 ? 0 : step / 2),
                              200 + row * rowHeight};
                if (plateDistance(p) > 11 && p.x < 120) {
                    middles.push_back(p);
                    middles.push_back({WIDTH - p.x, p.y});
                }
            }
        }
    }
};

double holeDistance(Point p) {
    static const Holes holes;
    if (p.y < 194 || p.y > 256) {
        return 6;
    }
    double nearest = 6;
    for (const Point middle : holes.middles) {
        nearest = std::min(nearest, circleDistance(p, middle, 1.7));
    }
    return nearest;
}

/// The distances of a point to everything on the body, negative inside.
struct Distances {
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

Distances distancesOf(Point p) {
    Distances at{};
    at.edge = polygonDistance(p, SHADED_OUTLINE);
    const double fromSide = p.x < MIDDLE ? p.x : WIDTH - p.x;
    at.rail = (fromSide - railWidth(p.y)) * 0.93;
    at.glass = boxDistance(p, GLASS, 9);
    at.display = boxDistance(p, DISPLAY, 3);
    at.deck = boxDistance(p, DECK, 10);
    at.plate = plateDistance(p);
    at.seat = boxDistance(p, around(LOGO, 1), 8);
    for (const Point button : BUTTONS) {
        at.seat = std::min(at.seat, circleDistance(p, button, SEAT_RADIUS));
    }
    at.slot = boxDistance(p, SLOT, 6);
    at.tiles = boxDistance(p, TILE_BED, 5);
    at.holes = holeDistance(p);
    return at;
}

double seamDistance(Point p) {
    return std::min(std::fabs(p.y - UPPER_SEAM), std::fabs(p.y - LOWER_SEAM));
}

double heightAt(Point p) {
    const Distances at = distancesOf(p);
    // The whole shell bulges a little, so that no face has an even shade.
    const double dx = (p.x - MIDDLE) / MIDDLE;
    const double dy = (p.y - MIDDLE) / MIDDLE;
    double height = -12 * (dx * dx + dy * dy);
    if (at.rail < 0) {
        return height * 0.3 + roundedRise(fromRailEdge(p), 20, 12) +
               roundedRise(-at.rail, 4.5, 2.6) - gripDepth(p) -
               bevelledRise(1.3 - seamDistance(p), 1.3, 0.9);
    }
    height += roundedRise(std::min(p.y - 9, HEIGHT - p.y), 6, 3.6) + roundedRise(at.rail, 4, 1.8);
    if (at.plate < 0) {
        height += roundedRise(-at.plate, 3.6, 2.6);
        height -= seatDepth(at.seat);
        return height;
    }
    const double frame = std::min({at.glass, at.deck, at.tiles});
    height += beadRise(frame, FRAME, 1.25) - bevelledRise(0.4 - frame, 0.8, 1.0);
    height -= bevelledRise(0.9 - at.slot, 2.4, 2.0);
    height -= bevelledRise(1.0 - at.holes, 1.8, 1.3);
    return height;
}

/// Compresses very bright light as film does: near white, but never flat.
Light exposed(Light light) {
    const auto channel = [](double value) {
        constexpr double knee = 0.6;
        const double over = (value - knee) / (1 - knee);
        return over > 0 ? knee + (1 - knee) * over / (1 + over / 2) : value;
    };
    return {channel(light.r), channel(light.g), channel(light.b)};
}

Light railColour(Point p, const Distances& at, Direction n) {
    const double grain = 0.6 * noise(p.x * 1.7, p.y / 26, 11) + 0.4 * noise(p.x * 3.1, p.y / 9, 12);
    const bool isEnd = p.y < UPPER_SEAM || p.y > LOWER_SEAM;
    const Light brushed = brushedMetal(lightOf(196, 202, 206), n, isEnd ? 0 : grain);
    const Light polished = polishedMetal(lightOf(214, 222, 228), n);
    Light light = mixed(brushed * 0.80, polished, isEnd ? 0.40 : 0.42);
    // The flank that the lamp doesn't reach mirrors the lit room as a streak.
    const double streak = smoothStep(0.42, 0.58, n.x) * smoothStep(0.78, 0.62, n.x);
    light = light + lightOf(126, 150, 164) * (0.45 * streak * smoothStep(0.5, 0.1, n.y));
    light = exposed(light);
    light = light * mixed(1, 0.45, smoothStep(0.3, 1.1, gripDepth(p)));
    light = light * mixed(0.25, 1, smoothStep(0.2, 0.9, seamDistance(p)));
    // The shade where the rail meets the shell.
    return light * (0.25 + 0.75 * smoothStep(0, 1.8, -at.rail));
}

Light plateColour(Point p, const Distances& at, Direction n) {
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
                  (0.58 + 0.60 * fan4 * fan4 + 0.26 * cross4 * cross4);
    // The edge is polished; a turned line runs along it.
    light = mixed(light, polishedMetal(lightOf(236, 240, 242), n),
                  0.75 * smoothStep(-3.4, -2.6, at.plate));
    const double line = std::fabs(at.plate + 5.4);
    light = light * mixed(1, 0.62, smoothStep(0.75, 0.15, line));
    light = mixed(light, seatLight(at.seat, n), smoothStep(SEAT_WALL, SEAT_WALL - 1, at.seat));
    return light * (0.35 + 0.65 * smoothStep(0, 1.0, -at.plate));
}

/// Returns the light of the studio's big window, which all flat faces mirror. Its lower edge is a
/// wide arc.
double windowLight(Point p) {
    constexpr Point middleOfArc{-40, -160};
    constexpr double arc = 402;
    const double inside = -circleDistance(p, middleOfArc, arc);
    return smoothStep(-0.8, 0.8, inside) * (0.35 + 0.65 * smoothStep(260, 0, p.y));
}

Light shellColour(Point p, const Distances& at, Direction n) {
    const double flakes = noise(p.x * 2.3, p.y * 2.3, 31);
    Light light = lacquer(lightOf(6, 44, 66) * (1 + 0.10 * flakes), n);
    light = light + lightOf(112, 184, 216) * (0.066 * windowLight(p));
    // The plate stands on the shell and shades it, below right.
    const double shaded = smoothStep(8, -3, plateDistance({p.x - 3.2, p.y - 4.6}));
    light = light * (1 - 0.72 * shaded);
    light = light * (0.2 + 0.8 * smoothStep(0, 1.3, at.plate));
    // The sound holes are dark.
    light = light * mixed(1, 0.10, smoothStep(0.4, -0.6, at.holes));
    const double frame = std::min({at.glass, at.deck, at.tiles});
    if (at.tiles < 0) {
        return lightOf(14, 20, 24) * (0.3 + 0.7 * smoothStep(0, 3, p.y - TILE_BED.top));
    }
    if (frame < FRAME) {
        light = mixed(polishedMetal(lightOf(186, 198, 206), n),
                      brushedMetal(lightOf(120, 130, 138), n, 0), 0.45) *
                (0.2 + 0.8 * smoothStep(0, 0.8, std::min(frame, FRAME - frame)));
    } else {
        light = light * mixed(0.35, 1, smoothStep(FRAME, FRAME + 1.8, frame));
    }
    light = light * (0.2 + 0.8 * smoothStep(0, 1.6, at.rail));
    const double letters = wordmarkDistance(p);
    const double behind = wordmarkDistance({p.x - 0.6, p.y - 0.8});
    light = light * mixed(1, 0.45, smoothStep(0.6, -0.4, behind));
    light = mixed(light, lightOf(214, 224, 228) * mixed(1, 0.68, smoothStep(26, 37, p.y)),
                  smoothStep(0.5, -0.4, letters));
    return mixed(light, lightOf(150, 178, 192),
                 0.55 * smoothStep(0.5, -0.5, smallPrintDistance(p)));
}

/// Returns the colour of the black glass in the shell, at a distance inwards from its edge.
Light glassColour(Point p, double inwards, Direction n, const Box& glass) {
    Light light = lacquer(lightOf(5, 8, 10), n) * 0.6;
    // The mirrored window slants over the whole glass and fades downwards.
    const double across = p.x + 0.55 * p.y;
    const double cut = glass.top < MIDDLE ? 198 : 300;
    const double down = (p.y - glass.top) / (glass.bottom - glass.top);
    light = light + lightOf(118, 156, 172) *
                        (smoothStep(cut + 1, cut - 1, across) * mixed(0.115, 0.020, down));
    return light * (0.04 + 0.96 * smoothStep(0, 1.8, inwards));
}

/// Returns the light of the fine edge around an opening in the glass. The edge is lit at the lower
/// right.
Light lipLight(Point p, double distance, const Box& box) {
    const double lip = smoothStep(1.6, 0.6, distance) * smoothStep(0.0, 0.5, distance);
    const Point from = p - box.centre();
    const double lit = smoothStep(
        -0.6, 1.0, from.x / (box.right - box.left) + 2 * from.y / (box.bottom - box.top));
    return lightOf(110, 150, 165) * (lip * (0.05 + 0.35 * lit));
}

/// Returns the strength of the printed scale above the bar. Its sixteen parts begin on whole
/// pixels.
double scaleMark(Point p) {
    constexpr double left = placeOf("PB").left;
    constexpr double part = 16;
    constexpr double bottom = 283;
    const double place = std::floor((p.x - left) / part);
    if (place < 0 || place > 16 || p.x - left - place * part > 1 || p.y > bottom) {
        return 0;
    }
    const bool isLong = static_cast<int>(place) % 4 == 0;
    return p.y > bottom - (isLong ? 4 : 2) ? (isLong ? 1.0 : 0.6) : 0;
}

Drop colourAt(Point p, Direction n, double edgeWidth) {
    const Distances at = distancesOf(p);
    Light light;
    if (at.rail < 0) {
        light = railColour(p, at, n);
    } else if (at.plate < 0) {
        light = plateColour(p, at, n);
    } else if (at.display < 0) {
        // The display lies deep, so its upper and left rims shade it.
        const double top = smoothStep(0, 4.2, p.y - DISPLAY.top);
        const double left = smoothStep(0, 4.2, p.x - DISPLAY.left);
        light = lightOf(DISPLAY_COLOUR) * (0.16 + 0.84 * top) * (0.26 + 0.74 * left);
        light = light *
                (0.6 + 0.4 * smoothStep(0, 1, std::min(DISPLAY.bottom - p.y, DISPLAY.right - p.x)));
    } else if (at.glass < 0) {
        light = glassColour(p, -at.glass, n, GLASS) + lipLight(p, at.display, DISPLAY);
    } else if (at.deck < 0) {
        light = glassColour(p, -at.deck, n, DECK) * mixed(1, 0.25, smoothStep(0.3, -1.2, at.slot)) +
                lipLight(p, at.slot, SLOT) + lightOf(DISPLAY_COLOUR) * (0.30 * scaleMark(p));
    } else {
        light = shellColour(p, at, n);
    }
    return {light * mixed(0.05, 1, smoothStep(0.25, edgeWidth, -at.edge)), 1};
}

/// Returns the pixels that belong to the window.
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
    const int samples = scale == 1 ? 4 : (scale == 2 ? 3 : 2);
    // Transparency is one bit, so the edge can't blend and goes dark instead. Finer pixels need
    // less.
    const double edgeWidth = 0.6 + 1.5 / scale;
    const Scene scene{heightAt, [=](Point p, Direction n) { return colourAt(p, n, edgeWidth); }};
    const Drawing drawing = draw(scene, {0, 0}, WIDTH * scale, HEIGHT * scale, scale, samples);
    // The texts lie on plain ground, so this part isn't dithered. A hairline separates the two
    // lines of the display.
    constexpr Box plain{84, 57, 254, 88};
    constexpr Box hairline{86, 73, 250, 74};
    constexpr Rgba hairlineColour{0, 141, 171};
    Picture fixed(WIDTH * scale, HEIGHT * scale, CLEAR);
    const auto fill = [&](const Box& box, Rgba colour) {
        for (int y = static_cast<int>(box.top) * scale; y < static_cast<int>(box.bottom) * scale;
             ++y) {
            for (int x = static_cast<int>(box.left) * scale;
                 x < static_cast<int>(box.right) * scale; ++x) {
                fixed.at(x, y) = colour;
            }
        }
    };
    fill(plain, DISPLAY_COLOUR);
    fill(hairline, hairlineColour);
    // With more pixels the shades blend by themselves.
    const double mostOwed = scale == 1 ? 3 : 0.5;
    return dithered(drawing, fixed, outlineMask(scale), 255, mostOwed);
}

} // namespace zvonivec::skin
