#include "skin/drawing/device.h"
#include "skin/drawing/light.h"
#include "skin/drawing/symbols.h"

#include <array>

namespace zvonivec::skin {

namespace {

constexpr std::array<Rgba, 4> SYMBOL_COLOURS{{
    {0, 192, 192},
    {64, 255, 255},
    {224, 255, 64},
    {160, 160, 160},
}};

} // namespace

Picture drawRoundButton(int button, ButtonState state, int scale) {
    const Scene scene{
        [](Point p) {
            const double d = circleDistance(p, {15.5, 15.5}, 14);
            return d < 0 ? -d * 0.2 : 0.0;
        },
        [](Point, Direction n) {
            return Drop{lightOf(40, 42, 46) * (0.6 - n.x - n.y), 1};
        },
    };
    const Drawing drawing = draw(scene, {0, 0}, 31 * scale, 31 * scale, scale, 4);
    Mask mask(31 * scale, 31 * scale, 0);
    for (int y = 0; y < mask.height(); ++y) {
        for (int x = 0; x < mask.width(); ++x) {
            mask.at(x, y) =
                circleDistance({(x + 0.5) / scale, (y + 0.5) / scale}, {15.5, 15.5}, 15.95) < 0 ? 1
                                                                                                : 0;
        }
    }
    Picture picture = dithered(drawing, Picture(31 * scale, 31 * scale, CLEAR), mask, 250);
    paint(picture, buttonSymbol(button), SYMBOL_COLOURS.at(static_cast<std::size_t>(state)), scale);
    return picture;
}

Picture drawTile(int button, ButtonState state, int scale) {
    const double sign = state == ButtonState::Pressed ? -1 : 1;
    const double base = state == ButtonState::Hover ? 0.9 : 0.65;
    Picture picture(14 * scale, 14 * scale, CLEAR);
    for (int y = 0; y < 14 * scale; ++y) {
        for (int x = 0; x < 14 * scale; ++x) {
            const bool corner = (x < scale || x >= 13 * scale) && (y < scale || y >= 13 * scale);
            if (!corner) {
                const double t = base + sign * (6.5 - y / scale) * 0.04;
                picture.at(x, y) =
                    Rgba{static_cast<std::uint8_t>(t * 200), static_cast<std::uint8_t>(t * 205),
                         static_cast<std::uint8_t>(t * 210)};
            }
        }
    }
    const Figure bar({{{3, 9}, {8, 9}, {8, 11}, {3, 11}}});
    const Figure cross(
        {{{3, 4}, {4, 3}, {11, 10}, {10, 11}}, {{10, 3}, {11, 4}, {4, 11}, {3, 10}}});
    paint(picture, button == 5 ? bar : cross, {20, 30, 40}, scale);
    return picture;
}

Picture drawDisplayMark(int button, int scale) {
    const bool wide = button == 0 || button == 4;
    Picture picture((wide ? 12 : 8) * scale, (wide ? 6 : 8) * scale, CLEAR);
    paint(picture, displayMark(button), MARK_COLOUR, scale);
    return picture;
}

Picture drawLoudspeaker(int scale) {
    Picture picture(10 * scale, 8 * scale, CLEAR);
    paint(picture, loudspeaker(), MARK_COLOUR, scale);
    return picture;
}

} // namespace zvonivec::skin
