// Colours as light, and how drawn light becomes pixels.
#pragma once

#include "skin/drawing/geometry.h"
#include "skin/drawing/image.h"

#include <cstddef>
#include <functional>

namespace zvonivec::skin {

/// An amount of light per channel. A screen shows at most 1.
struct Light {
    double r = 0;
    double g = 0;
    double b = 0;
    friend Light operator+(Light x, Light y) { return {x.r + y.r, x.g + y.g, x.b + y.b}; }
    friend Light operator*(Light x, double k) { return {x.r * k, x.g * k, x.b * k}; }
    friend Light operator*(Light x, Light y) { return {x.r * y.r, x.g * y.g, x.b * y.b}; }
};

inline Light mixed(Light a, Light b, double share) {
    return a * (1 - share) + b * share;
}

/// Returns the light of a colour, given as a screen's red, green and blue from 0 to 255. The curve
/// is a plain square: close to a screen's own curve, and exact on every machine.
inline Light lightOf(double r, double g, double b) {
    return {(r / 255) * (r / 255), (g / 255) * (g / 255), (b / 255) * (b / 255)};
}
inline Light lightOf(Rgba colour) {
    return lightOf(colour.r, colour.g, colour.b);
}

/// A drawn pixel before it is rounded: light, and the share of the pixel that is covered.
struct Drop {
    Light light;
    double cover = 1;
};
using Drawing = Grid<Drop>;

struct Direction {
    double x = 0;
    double y = 0;
    double z = 1; ///< towards the viewer
};

/// A scene as two functions of points in layout pixels.
struct Scene {
    /// Returns the height of the surface, in layout pixels.
    std::function<double(Point)> height;
    /// Returns the light and cover of a point where the surface looks in a direction.
    std::function<Drop(Point, Direction)> colour;
};

/// Draws a part of a scene, whose top left corner is given. Scale is in pixels to a layout pixel.
/// Every pixel has a grid of samples.
Drawing draw(const Scene& scene, Point from, int width, int height, int scale, int samples);

/// Returns a finished picture as a drawing.
Drawing drawingOf(const Picture& picture);
/// Returns the opaque pixel that shows an amount of light.
Rgba pixelOf(Light light);
/// Rounds every pixel by itself. A pixel that is covered by less than half is clear.
Picture rounded(const Drawing& drawing);
/// Rounds every pixel by itself and keeps the cover as alpha.
Picture roundedWithAlpha(const Drawing& drawing);

/// Reduces a drawing to a number of colours. The error of each pixel, up to mostOwed steps of a
/// channel, is spread over its neighbours, so that soft shades show no bands. Pixels of the fixed
/// picture that aren't clear stay as they are. Pixels outside the mask become clear.
Picture dithered(const Drawing& drawing, const Picture& fixed, const Mask& mask,
                 std::size_t colours, double mostOwed);

} // namespace zvonivec::skin
