#include "skin/drawing/device.h"
#include "skin/drawing/lettering.h"
#include "skin/drawing/light.h"
#include "skin/drawing/studio.h"

#include <algorithm>
#include <array>

namespace zvonivec::skin {

namespace {

/// The badges are designed in a square of 32.
constexpr int BADGE_SIZE = 32;
constexpr int SAMPLES = 8;

Drawing drawBadge(const Scene& scene, int size) {
    // The samples form a grid of their own, so every size shows the same design.
    const Scene fitted{
        [&](Point p) {
            return scene.height(p * (static_cast<double>(BADGE_SIZE) / size)) *
                   (static_cast<double>(size) / BADGE_SIZE);
        },
        [&](Point p, Direction n) {
            return scene.colour(p * (static_cast<double>(BADGE_SIZE) / size), n);
        },
    };
    return draw(fitted, {0, 0}, size, size, 1, size > 64 ? 4 : SAMPLES);
}

// --- the logo: a drop of teal glass that fills its seat ---

constexpr Box LOGO_EDGE{0, 0, 32, 32};
constexpr double LOGO_CORNER = 7.5;

double logoHeight(Point p) {
    return roundedRise(-boxDistance(p, LOGO_EDGE, LOGO_CORNER) - 1.0, 5, 3.2);
}

Drop logoColour(Point p, Direction n) {
    const double edge = boxDistance(p, LOGO_EDGE, LOGO_CORNER);
    // Lit from within: brighter towards the foot, where the lamp's light gathers.
    const double glow = smoothStep(8, 33, p.y + 0.2 * p.x);
    const Light ground = mixed(lightOf(0, 66, 92), lightOf(16, 206, 222), glow * glow);
    Light light = lacquer(ground, n);
    // The lamp's reflection: a bow along the upper edge, fading down to a crisp end.
    const double inner = boxDistance(p, {2.6, 2.4, 29.4, 29.6}, 5.4);
    const double gloss =
        smoothStep(0.4, -0.4, inner) * smoothStep(-0.4, 0.4, circleDistance(p, {16, 56}, 43.5));
    light = light + lightOf(214, 240, 250) * (gloss * mixed(0.05, 0.42, smoothStep(13, 2, p.y)));
    const double letters = mp3Distance(p);
    const double below = mp3Distance({p.x - 0.6, p.y - 0.9});
    light = light * mixed(1, 0.30, smoothStep(0.9, -0.5, below));
    light = mixed(light, lightOf(246, 254, 254), smoothStep(0.35, -0.35, letters));
    light = light * mixed(0.03, 1, smoothStep(-0.3, -1.5, edge));
    return {light, edge < 0 ? 1.0 : 0.0};
}

// --- the icon: the device with one button ---

constexpr Box ICON_SCREEN{7.5, 6, 24.5, 13};
constexpr Point ICON_KNOB{16, 21.5};
constexpr double ICON_KNOB_RADIUS = 7.2;

struct IconPlace {
    double edge;
    double rail;
    double screen;
    double knob;
};

IconPlace iconPlaceOf(Point p) {
    static constexpr std::array<Point, 12> edge{{
        {1, 28.5},
        {1, 4},
        {3.4, 1},
        {5.4, 1},
        {7, 2.6},
        {25, 2.6},
        {26.6, 1},
        {28.6, 1},
        {31, 4},
        {31, 28.5},
        {28.5, 31},
        {3.5, 31},
    }};
    IconPlace place{};
    place.edge = polygonDistance(p, edge);
    place.rail = (p.x < 16 ? p.x : 32 - p.x) - 5;
    place.screen = boxDistance(p, ICON_SCREEN, 1);
    place.knob = circleDistance(p, ICON_KNOB, ICON_KNOB_RADIUS);
    return place;
}

/// Returns the distance from a rail's outer edge inwards, around softly milled corners.
double fromIconRailEdge(Point p) {
    struct Side {
        Point on;
        Point inwards;
    };
    static constexpr std::array<Side, 5> sides{{
        {{1, 16}, {1, 0}},
        {{1, 4}, {0.7809, 0.6247}},
        {{4, 1}, {0, 1}},
        {{1, 28.5}, {0.7071, -0.7071}},
        {{4, 31}, {0, -1}},
    }};
    const Point left{p.x < 16 ? p.x : 32 - p.x, p.y};
    double inwards = 6;
    for (const Side& side : sides) {
        inwards = smoothUnion(inwards, dot(left - side.on, side.inwards), 2.5);
    }
    return inwards;
}

double iconHeight(Point p) {
    const IconPlace at = iconPlaceOf(p);
    if (at.rail < 0) {
        return roundedRise(fromIconRailEdge(p), 4.2, 2.8) + roundedRise(-at.rail, 1.2, 0.8);
    }
    if (at.knob < 0) {
        // A steel ring, and a domed cap within it.
        const double cap = -at.knob - 1.9;
        return cap < 0 ? beadRise(-at.knob, 1.9, 0.9) : roundedRise(cap, 1.8, 1.3);
    }
    const double dx = (p.x - 16) / 16;
    const double dy = (p.y - 16) / 16;
    return -1.4 * (dx * dx + dy * dy) + roundedRise(-at.edge, 1.1, 0.7) +
           beadRise(at.screen, 1.1, 0.5);
}

/// The bars on the display, from the foot upwards.
double iconBars(Point p) {
    constexpr std::array<double, 5> heights{2, 4, 3, 5, 2};
    constexpr double step = 3;
    constexpr double width = 2;
    double nearest = 10;
    for (std::size_t i = 0; i < heights.size(); ++i) {
        const double left = 9 + static_cast<double>(i) * step;
        nearest =
            std::min(nearest, boxDistance(p, {left, 12 - heights.at(i), left + width, 12}, 0));
    }
    return nearest;
}

/// Draws the icon of 16 pixels: only rails, display and a big triangle, on the pixel grid.
Drop smallIconColour(Point p, Direction /*surface*/) {
    static constexpr std::array<Point, 6> play{
        {{12, 16}, {14, 16}, {22, 21}, {22, 23}, {14, 28}, {12, 28}}};
    const double edge = iconPlaceOf(p).edge;
    const double fromSide = p.x < 16 ? p.x : 32 - p.x;
    Light light = mixed(lightOf(34, 84, 112), lightOf(8, 34, 50), smoothStep(2, 22, p.y));
    if (fromSide < 4) {
        const double lit = p.x < 16 ? 1.0 : 0.45;
        light = lightOf(226, 232, 236) * (lit * mixed(1, 0.55, smoothStep(4, 30, p.y)));
    } else if (boxDistance(p, {6, 6, 26, 14}, 0.2) < 0) {
        light = lightOf(DISPLAY_COLOUR);
    }
    light = mixed(light, lightOf(MARK_COLOUR), smoothStep(0.2, -0.2, polygonDistance(p, play)));
    return {light, edge < 0 ? 1.0 : 0.0};
}

Light iconKnobColour(Point p, double inwards, Direction n) {
    static constexpr std::array<Point, 3> play{{{14.0, 18.1}, {20.0, 21.5}, {14.0, 24.9}}};
    if (inwards < 1.9) {
        return mixed(polishedMetal(lightOf(232, 238, 242), n),
                     brushedMetal(lightOf(190, 198, 204), n, 0), 0.5) *
               (0.35 + 0.65 * smoothStep(0, 0.35, std::min(inwards, 1.9 - inwards)));
    }
    Light light = lacquer(lightOf(14, 18, 22), n);
    const double gloss =
        smoothStep(2.3, 2.7, inwards) * smoothStep(-0.2, 0.2, circleDistance(p, {16, 31}, 10.6));
    light = light + lightOf(206, 226, 236) * (gloss * mixed(0.03, 0.26, smoothStep(21, 16, p.y)));
    light = light * (0.2 + 0.8 * smoothStep(1.9, 2.4, inwards));
    return mixed(light, lightOf(MARK_COLOUR), smoothStep(0.12, -0.12, polygonDistance(p, play)));
}

Drop iconColour(Point p, Direction n) {
    const IconPlace at = iconPlaceOf(p);
    Light light;
    if (at.rail < 0) {
        light = mixed(brushedMetal(lightOf(210, 216, 220), n, 0),
                      polishedMetal(lightOf(220, 228, 232), n), 0.45) *
                (0.2 + 0.8 * smoothStep(0, 0.7, -at.rail));
    } else if (at.knob < 0) {
        light = iconKnobColour(p, -at.knob, n);
    } else if (at.screen < 0) {
        const double shade = smoothStep(0, 1.3, p.y - ICON_SCREEN.top) *
                             smoothStep(-0.3, 1.0, p.x - ICON_SCREEN.left);
        light = lightOf(DISPLAY_COLOUR) * (0.25 + 0.75 * shade);
        light = mixed(light, lightOf(MARK_COLOUR) * mixed(1, 0.55, smoothStep(7, 12, p.y)),
                      smoothStep(0.12, -0.12, iconBars(p)));
    } else if (at.screen < 1.1) {
        light = polishedMetal(lightOf(190, 202, 210), n) *
                (0.3 + 0.7 * smoothStep(0, 0.3, std::min(at.screen, 1.1 - at.screen)));
    } else {
        light = lacquer(lightOf(8, 50, 74), n);
        const double window = circleDistance(p, {-6, -18}, 44);
        light = light + lightOf(112, 184, 216) * (0.07 * smoothStep(0.2, -0.2, window));
        const double shadow =
            smoothStep(2.4, -0.5, circleDistance(p, ICON_KNOB + Point{0.6, 0.9}, ICON_KNOB_RADIUS));
        light = light * (1 - 0.75 * shadow) * smoothStep(-0.6, 0.5, at.rail);
    }
    light = light * (0.15 + 0.85 * smoothStep(0, 0.5, -at.edge));
    return {light, at.edge < 0 ? 1.0 : 0.0};
}

// --- the hand ---

/// The hand's skin, without its black line.
double handDistance(Point p) {
    struct Finger {
        Point from;
        Point to;
        double radius;
    };
    static constexpr std::array<Finger, 5> fingers{{
        {{12.5, 5.8}, {12.5, 18}, 1.5},
        {{15.5, 12.5}, {15.5, 19}, 1.5},
        {{18.5, 13.5}, {18.5, 19}, 1.5},
        {{21.5, 15}, {21.5, 20}, 1.5},
        {{8.5, 17.5}, {12.5, 22.5}, 1.45},
    }};
    static constexpr std::array<Point, 8> palm{{
        {11, 17},
        {23, 17},
        {23, 22.5},
        {21, 26},
        {21, 28},
        {13, 28},
        {13, 26},
        {11, 23},
    }};
    double distance = polygonDistance(p, palm);
    for (const Finger& finger : fingers) {
        distance = std::min(distance, segmentDistance(p, finger.from, finger.to) - finger.radius);
    }
    return distance;
}

Drop handColour(Point p) {
    const double skin = handDistance(p);
    // The lines between the fingers.
    double line = segmentDistance(p, {14.5, 12}, {14.5, 18.5}) - 0.5;
    line = std::min(line, segmentDistance(p, {17.5, 14.5}, {17.5, 18.5}) - 0.5);
    line = std::min(line, segmentDistance(p, {20.5, 15.5}, {20.5, 18.5}) - 0.5);
    const double shade = smoothStep(14, 34, p.x * 0.6 + p.y * 0.8);
    Light light = mixed(lightOf(255, 255, 255), lightOf(206, 214, 220), shade);
    light = mixed(light, Light{}, smoothStep(-0.15, 0.15, skin));
    light = mixed(light, lightOf(30, 34, 38), smoothStep(0.15, -0.15, line));
    return {light, skin < 1.05 ? 1.0 : 0.0};
}

} // namespace

Picture drawLogo(int scale) {
    return rounded(drawBadge({logoHeight, logoColour}, BADGE_SIZE * scale));
}

Picture drawIcon(int size, bool softEdges) {
    constexpr int small = 16;
    const Drawing drawing =
        drawBadge({iconHeight, size <= small ? smallIconColour : iconColour}, size);
    return softEdges ? roundedWithAlpha(drawing) : rounded(drawing);
}

Picture drawHand(int scale) {
    const Scene scene{[](Point) { return 0.0; }, [](Point p, Direction) { return handColour(p); }};
    return rounded(drawBadge(scene, BADGE_SIZE * scale));
}

} // namespace zvonivec::skin
