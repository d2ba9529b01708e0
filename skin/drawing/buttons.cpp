#include "skin/drawing/device.h"
#include "skin/drawing/light.h"
#include "skin/drawing/seat.h"
#include "skin/drawing/studio.h"
#include "skin/drawing/symbols.h"

#include <array>

namespace zvonivec::skin {

namespace {

constexpr int ROUND_SIZE = 31;
constexpr Point ROUND_CENTRE{15.5, 15.5};
/// Radius of the picture. At scale 1 it leaves 168 of the 961 pixels clear.
constexpr double PICTURE_RADIUS = 15.95;
/// Radius of the cap. A dark gap parts it from the seat.
constexpr double CAP_RADIUS = 13.9;

double roundHeight(Point p) {
    const double radius = length(p - ROUND_CENTRE);
    if (radius > CAP_RADIUS) {
        return -seatDepth(radius - SEAT_RADIUS);
    }
    // A rounded shoulder, and a shallow hollow for the finger.
    const double hollow = 1 - clamped(radius / 9.6, 0, 1) * clamped(radius / 9.6, 0, 1);
    return roundedRise(CAP_RADIUS - radius, 3.4, 2.6) - 0.75 * hollow * hollow;
}

Drop roundColour(const Figure& symbol, Point p, Direction n) {
    const Point from = p - ROUND_CENTRE;
    const double radius = length(from);
    const Light seat = seatLight(radius - SEAT_RADIUS, n);
    Light cap = lacquer(lightOf(15, 18, 22), n);
    // The gloss is the lamp over the upper part, cut off by the edge of the hollow ...
    const double lamp = smoothStep(12.3, 11.6, radius) *
                        smoothStep(-0.35, 0.35, circleDistance(p, {15.9, 29.5}, 18.9));
    const double height = smoothStep(12.5, 3, p.y + 0.25 * from.x);
    cap = cap + lightOf(206, 226, 236) * (lamp * (0.035 + 0.30 * height * height));
    // ... and the light of the table on the opposite shoulder.
    const double down = radius > 0 ? (from.x * 0.55 + from.y * 0.835) / radius : 0;
    const double shoulder = smoothStep(10.4, 11.8, radius) * smoothStep(13.2, 12.2, radius);
    cap = cap + lightOf(70, 170, 196) * (0.30 * shoulder * smoothStep(0.45, 1.0, down));
    // The symbol is let into the cap.
    cap = cap * mixed(1, 0.35, smoothStep(1.8, 0.2, symbol.distance(p)));
    return {mixed(cap, seat, smoothStep(CAP_RADIUS - 0.5, CAP_RADIUS + 0.3, radius)), 1};
}

constexpr int TILE_SIZE = 14;

/// Draws a mark on the display. Transparency is one bit, so smooth edges are mixed with the colour
/// of the display.
Picture displayFigure(const Figure& figure, int width, int height, int scale) {
    Picture picture(width * scale, height * scale, CLEAR);
    if (scale == 1) {
        paint(picture, figure, MARK_COLOUR, scale);
    } else {
        paintSmooth(picture, figure, MARK_COLOUR, DISPLAY_COLOUR, scale);
    }
    return picture;
}

} // namespace

Picture drawRoundButton(int button, ButtonState state, int scale) {
    const int samples = scale == 1 ? 8 : 4;
    const int size = ROUND_SIZE * scale;
    const Figure& symbol = buttonSymbol(button);
    const Scene scene{roundHeight, [&](Point p, Direction n) { return roundColour(symbol, p, n); }};
    const Drawing drawing = draw(scene, {0, 0}, size, size, scale, samples);
    Mask mask(size, size, 0);
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const Point p{(x + 0.5) / scale, (y + 0.5) / scale};
            mask.at(x, y) = circleDistance(p, ROUND_CENTRE, PICTURE_RADIUS) < 0 ? 1 : 0;
        }
    }
    // The symbol is painted last, so that nothing else depends on the state.
    const Rgba colour = SYMBOL_COLOURS.at(static_cast<std::size_t>(state));
    if (scale == 1) {
        Picture picture = dithered(drawing, Picture(size, size, CLEAR), mask, 254, 3);
        paint(picture, symbol, colour, scale);
        return picture;
    }
    Picture picture = rounded(drawing);
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            picture.at(x, y) = mask.at(x, y) == 0 ? CLEAR : picture.at(x, y);
        }
    }
    paintSmooth(picture, symbol, colour, CLEAR, scale);
    return picture;
}

Picture drawTile(int button, ButtonState state, int scale) {
    constexpr int minimise = 5;
    constexpr int samples = 8;
    constexpr Rgba symbolColour{18, 32, 40};
    const bool pressed = state == ButtonState::pressed;
    // Under the pointer the tile shines, with a little of the display's blue.
    const Light tint = pressed                       ? lightOf(178, 184, 188)
                       : state == ButtonState::hover ? lightOf(232, 255, 255) * 1.3
                                                     : lightOf(212, 217, 220);
    const Scene scene{
        [&](Point p) {
            const double inwards = -boxDistance(p, {0, 0, TILE_SIZE, TILE_SIZE}, 1.5);
            // Not pressed, the face bulges; pressed, it sinks behind its rim.
            const double x = (p.x - 7) / 7;
            const double y = (p.y - 7) / 7;
            const double face = -1.6 * (x * x * 0.4 + y * y);
            return pressed ? -0.9 * face - roundedRise(inwards, 2.2, 0.9)
                           : face + roundedRise(inwards, 1.8, 1.1);
        },
        [&](Point p, Direction n) {
            const double inwards = -boxDistance(p, {0, 0, TILE_SIZE, TILE_SIZE}, 1.5);
            const double rim = 0.55 + 0.45 * smoothStep(0.0, 1.0, inwards);
            return Drop{brushedMetal(tint, n, 0) * rim, 1};
        },
    };
    const int size = TILE_SIZE * scale;
    const Drawing drawing = draw(scene, {0, 0}, size, size, scale, samples);
    Picture picture = rounded(drawing);
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const bool side = x < scale || x >= size - scale;
            const bool end = y < scale || y >= size - scale;
            if (side && end) {
                picture.at(x, y) = CLEAR;
            }
        }
    }
    static const Figure bar({{{3, 9}, {8, 9}, {8, 11}, {3, 11}}});
    static const Figure cross({{{3, 3}, {4.5, 3}, {11, 9.5}, {11, 11}, {9.5, 11}, {3, 4.5}},
                               {{11, 3}, {11, 4.5}, {4.5, 11}, {3, 11}, {3, 9.5}, {9.5, 3}}});
    const Figure& symbol = button == minimise ? bar : cross;
    if (scale == 1) {
        paint(picture, symbol, symbolColour, scale);
    } else {
        paintSmooth(picture, symbol, symbolColour, CLEAR, scale);
    }
    return picture;
}

Picture drawDisplayMark(int button, int scale) {
    const bool wide = button == 0 || button == 4;
    return displayFigure(displayMark(button), wide ? 12 : 8, wide ? 6 : 8, scale);
}

Picture drawLoudspeaker(int scale) {
    return displayFigure(loudspeaker(scale), 10, 8, scale);
}

} // namespace zvonivec::skin
