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
    // The samples stand in a grid of their own, so any size comes out of the same design.
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
    return roundedRise(-boxDistance(p, LOGO_EDGE, LOGO_CORNER) - 1.3, 6, 3.6);
}

Drop logoColour(Point p, Direction n) {
    const double edge = boxDistance(p, LOGO_EDGE, LOGO_CORNER);
    // Lit from within: brighter towards the lower right, where the lamp's light gathers.
    const double glow = smoothStep(12, 54, p.x * 0.7 + p.y * 1.3);
    const Light ground = mixed(lightOf(2, 62, 82), lightOf(10, 186, 206), glow);
    Light light = lacquer(ground, n);
    // The lamp's reflection in the upper half, cut off by a soft curve.
    const double gloss = smoothStep(15.4, 14.6, p.y - (p.x - 16) * (p.x - 16) * 0.018) *
                         smoothStep(-2.6, -3.6, edge);
    light = light + lightOf(210, 240, 250) * (gloss * (0.05 + 0.16 * smoothStep(15, 2, p.y)));
    const double letters = mp3Distance(p);
    const double below = mp3Distance({p.x - 0.7, p.y - 0.9});
    light = light * mixed(1, 0.35, smoothStep(0.9, -0.5, below));
    light = mixed(light, lightOf(240, 252, 252), smoothStep(0.35, -0.35, letters));
    light = light * mixed(0.04, 1, smoothStep(-0.6, -1.9, edge));
    return {light, edge < 0 ? 1.0 : 0.0};
}

// --- the icon: the device with one button ---

struct IconPlace {
    double edge;
    double rail;
    double display;
    double button;
};

IconPlace iconPlaceOf(Point p) {
    static constexpr std::array<Point, 14> EDGE{{
        {1, 29},
        {1, 2.6},
        {2.6, 1},
        {5, 1},
        {6.4, 2.2},
        {25.6, 2.2},
        {27, 1},
        {29.4, 1},
        {31, 2.6},
        {31, 29},
        {29, 31},
        {3, 31},
        {2, 30.4},
        {1.4, 29.8},
    }};
    IconPlace place{};
    place.edge = polygonDistance(p, EDGE);
    place.rail = (p.x < 16 ? p.x : 32 - p.x) - 4.4;
    place.display = boxDistance(p, {7, 5.2, 25, 12.4}, 1);
    place.button = circleDistance(p, {16, 21.6}, 6.9);
    return place;
}

double iconHeight(Point p) {
    const IconPlace at = iconPlaceOf(p);
    if (at.rail < 0) {
        return roundedRise(-at.edge, 2.6, 2) + roundedRise(-at.rail, 1.6, 0.8);
    }
    const double dx = (p.x - 16) / 16;
    const double dy = (p.y - 16) / 16;
    double height = -1.4 * (dx * dx + dy * dy) + roundedRise(-at.edge, 1.6, 0.8);
    height += roundedRise(-at.button, 1.1, 0.8);
    height -= bevelledRise(-1.4 - at.button, 1.0, 0.7);
    return height;
}

/// The icon of 16 pixels: no more than its display and a big triangle, on the pixel grid.
Drop smallIconColour(Point p, Direction n) {
    const IconPlace at = iconPlaceOf(p);
    Light light = at.rail < -0.4 ? brushedMetal(lightOf(222, 228, 232), n, 0)
                                 : lacquer(lightOf(24, 42, 52), n) * 0.8;
    if (boxDistance(p, {6, 6, 26, 14}, 0.2) < 0) {
        light = lightOf(DISPLAY_COLOUR);
    }
    static constexpr std::array<Point, 4> PLAY{{{12, 16}, {13.5, 16}, {22, 22}, {13.5, 28}}};
    light = mixed(light, lightOf(MARK_COLOUR), smoothStep(0.2, -0.2, polygonDistance(p, PLAY)));
    return {light, at.edge < 0 ? 1.0 : 0.0};
}

Drop iconColour(Point p, Direction n) {
    const IconPlace at = iconPlaceOf(p);
    Light light;
    if (at.rail < 0) {
        light =
            brushedMetal(lightOf(222, 228, 232), n, 0) * (0.3 + 0.7 * smoothStep(0, 0.8, -at.rail));
    } else {
        light = lacquer(lightOf(24, 42, 52), n);
        const double rim = smoothStep(1.0, 0.5, at.display);
        light = light * mixed(1, 0.12, rim);
        light =
            mixed(light, lightOf(DISPLAY_COLOUR) * (0.55 + 0.45 * smoothStep(0, 1.6, p.y - 5.2)),
                  smoothStep(0.15, -0.15, at.display));
        const double shadow = smoothStep(2.2, -0.5, circleDistance(p, {16.7, 22.6}, 6.9));
        light = light * (1 - 0.6 * shadow * smoothStep(-0.2, 0.6, at.display));
        light = mixed(light, brushedMetal(lightOf(226, 230, 232), n, 0),
                      smoothStep(0.15, -0.15, at.button));
        const double cap = at.button + 1.9;
        light = mixed(light, lacquer(lightOf(26, 30, 34), n), smoothStep(0.15, -0.15, cap));
        static constexpr std::array<Point, 3> PLAY{{{14.0, 18.4}, {20.0, 21.6}, {14.0, 24.8}}};
        light =
            mixed(light, lightOf(MARK_COLOUR), smoothStep(0.15, -0.15, polygonDistance(p, PLAY)));
    }
    light = light * (0.2 + 0.8 * smoothStep(0, 0.9, -at.edge));
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
    static constexpr std::array<Finger, 5> FINGERS{{
        {{12.5, 5.8}, {12.5, 18}, 1.5},
        {{15.5, 12.5}, {15.5, 19}, 1.5},
        {{18.5, 13.5}, {18.5, 19}, 1.5},
        {{21.5, 15}, {21.5, 20}, 1.5},
        {{8.5, 17.5}, {12.5, 22.5}, 1.45},
    }};
    static constexpr std::array<Point, 8> PALM{{
        {11, 17},
        {23, 17},
        {23, 22.5},
        {21, 26},
        {21, 28},
        {13, 28},
        {13, 26},
        {11, 23},
    }};
    double distance = polygonDistance(p, PALM);
    for (const Finger& finger : FINGERS) {
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
    constexpr int SMALL = 16;
    const Drawing drawing =
        drawBadge({iconHeight, size <= SMALL ? smallIconColour : iconColour}, size);
    return softEdges ? roundedWithAlpha(drawing) : rounded(drawing);
}

Picture drawHand(int scale) {
    const Scene scene{[](Point) { return 0.0; }, [](Point p, Direction) { return handColour(p); }};
    return rounded(drawBadge(scene, BADGE_SIZE * scale));
}

} // namespace zvonivec::skin
