#include "skin/drawing/symbols.h"

#include "skin/drawing/light.h"

#include <array>
#include <utility>

namespace zvonivec::skin {

namespace {

using Polygon = std::vector<Point>;

Polygon box(double left, double top, double right, double bottom) {
    return {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
}

/// A triangle of 5 x 9 pixels with its tip at the right. Its sides rise one pixel per row.
Polygon smallRight(double left, double top) {
    return {{left, top},
            {left + 0.5, top},
            {left + 5, top + 4.5},
            {left + 0.5, top + 9},
            {left, top + 9}};
}

Polygon smallLeft(double left, double top) {
    return {{left + 5, top},
            {left + 5, top + 9},
            {left + 4.5, top + 9},
            {left, top + 4.5},
            {left + 4.5, top}};
}

/// A triangle of 5 x 6 pixels for the display.
Polygon markRight(double left) {
    return {{left, 0}, {left + 5, 2.5}, {left + 5, 3.5}, {left, 6}};
}

Polygon markLeft(double left) {
    return {{left + 5, 0}, {left + 5, 6}, {left, 3.5}, {left, 2.5}};
}

/// A sound wave of one pixel's width, bent around the back of the loudspeaker.
Polygon wave(double radius, int fifteenths) {
    constexpr Point source{1.5, 4};
    Polygon band = arc(source, radius + 0.5, -fifteenths, fifteenths);
    const Polygon inner = arc(source, radius - 0.5, fifteenths, -fifteenths);
    band.insert(band.end(), inner.begin(), inner.end());
    return band;
}

} // namespace

Figure::Figure(std::vector<std::vector<Point>> polygons) : polygons_(std::move(polygons)) {}

double Figure::distance(Point p) const {
    double nearest = polygonDistance(p, polygons_.front());
    for (const Polygon& polygon : polygons_) {
        const double distance = polygonDistance(p, polygon);
        nearest = distance < nearest ? distance : nearest;
    }
    return nearest;
}

const Figure& buttonSymbol(int button) {
    // The middle of the picture is at 15.5. The play triangle stands a little to the right, because
    // its weight lies at its base.
    static const std::array<Figure, 5> symbols{
        Figure({box(9, 11, 11, 20), smallLeft(12, 11), smallLeft(17, 11)}),
        Figure({box(11, 11, 14, 20), box(17, 11, 20, 20)}),
        Figure({{{11, 10}, {12, 10}, {22, 15}, {22, 16}, {12, 21}, {11, 21}}}),
        Figure({box(11, 11, 20, 20)}),
        Figure({smallRight(9, 11), smallRight(14, 11), box(20, 11, 22, 20)}),
    };
    return symbols.at(static_cast<std::size_t>(button));
}

const Figure& displayMark(int button) {
    static const std::array<Figure, 5> marks{
        Figure({box(0, 0, 2, 6), markLeft(2), markLeft(7)}),
        Figure({box(0, 0, 3, 8), box(5, 0, 8, 8)}),
        Figure({{{0, 0}, {1, 0}, {8, 3.5}, {8, 4.5}, {1, 8}, {0, 8}}}),
        Figure({box(0, 0, 8, 8)}),
        Figure({markRight(0), markRight(5), box(10, 0, 12, 6)}),
    };
    return marks.at(static_cast<std::size_t>(button));
}

const Figure& loudspeaker(int scale) {
    static const Polygon cone{{0, 2}, {1.8, 2}, {3.8, 0}, {4, 0},
                              {4, 8}, {3.8, 8}, {1.8, 6}, {0, 6}};
    static const Figure stairs({
        cone,
        box(5, 3, 6, 5),
        box(7, 2, 8, 6),
        box(6, 1, 7, 2),
        box(6, 6, 7, 7),
        box(9, 1, 10, 7),
        box(8, 0, 9, 1),
        box(8, 7, 9, 8),
    });
    static const Figure curves({cone, wave(4, 1), wave(6, 2), wave(8, 2)});
    return scale == 1 ? stairs : curves;
}

void paint(Picture& onto, const Figure& figure, Rgba colour, int scale) {
    for (int y = 0; y < onto.height(); ++y) {
        for (int x = 0; x < onto.width(); ++x) {
            if (figure.distance({(x + 0.5) / scale, (y + 0.5) / scale}) < 0) {
                onto.at(x, y) = colour;
            }
        }
    }
}

void paintSmooth(Picture& onto, const Figure& figure, Rgba colour, Rgba ground, int scale) {
    constexpr int samples = 8;
    for (int y = 0; y < onto.height(); ++y) {
        for (int x = 0; x < onto.width(); ++x) {
            int inside = 0;
            for (int row = 0; row < samples; ++row) {
                for (int column = 0; column < samples; ++column) {
                    const Point p{(x + (column + 0.5) / samples) / scale,
                                  (y + (row + 0.5) / samples) / scale};
                    inside += figure.distance(p) < 0 ? 1 : 0;
                }
            }
            if (inside == 0) {
                continue;
            }
            Rgba& pixel = onto.at(x, y);
            const double share = inside / static_cast<double>(samples * samples);
            const Light below = lightOf(pixel.a == 0 ? ground : pixel);
            pixel = inside == samples * samples ? colour
                                                : pixelOf(mixed(below, lightOf(colour), share));
        }
    }
}

} // namespace zvonivec::skin
