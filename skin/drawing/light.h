// Colours as light, the lamp over the device, and turning drawn light into pixels.
#pragma once

#include "skin/drawing/geometry.h"
#include "skin/drawing/image.h"

#include <cstddef>
#include <functional>

namespace zvonivec::skin {

/// An amount of light per channel; 1 is the brightest that a screen shows.
struct Light {
    double r = 0;
    double g = 0;
    double b = 0;
    friend Light operator+(Light a, Light b) { return {a.r + b.r, a.g + b.g, a.b + b.b}; }
    friend Light operator*(Light a, double k) { return {a.r * k, a.g * k, a.b * k}; }
    friend Light operator*(Light a, Light b) { return {a.r * b.r, a.g * b.g, a.b * b.b}; }
};

inline Light mixed(Light a, Light b, double share) {
    return a * (1 - share) + b * share;
}

/// The light of a colour that is given as a screen's red, green and blue from 0 to 255. The curve
/// is a plain square: near enough to a screen's own, and exact everywhere.
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

/// What a scene is made of. Both functions are asked for points in layout pixels.
struct Scene {
    /// How far the surface stands out, in layout pixels.
    std::function<double(Point)> height;
    /// The light and cover of a point, given which way the surface looks there.
    std::function<Drop(Point, Direction)> colour;
};

/// Draws the part of a scene from a place on, at so many pixels to a layout pixel, with a grid of
/// samples in every pixel.
Drawing draw(const Scene& scene, Point from, int width, int height, int scale, int samples);

/// A finished picture as a drawing again.
Drawing drawingOf(const Picture& picture);
/// The opaque pixel that shows an amount of light.
Rgba pixelOf(Light light);
/// Rounds every pixel by itself; a pixel that is covered less than by half is clear.
Picture rounded(const Drawing& drawing);
/// The same, with the cover kept as alpha.
Picture roundedWithAlpha(const Drawing& drawing);

/// Brings a drawing down to a number of colours, spreading what each pixel loses over its
/// neighbours so that soft shades show no bands: up to so many steps of a channel. Pixels of the
/// fixed picture that are not clear are taken over as they are; pixels outside the mask become
/// clear.
Picture dithered(const Drawing& drawing, const Picture& fixed, const Mask& mask,
                 std::size_t colours, double mostOwed);

} // namespace zvonivec::skin
