#include "skin/drawing/lettering.h"

#include <string_view>
#include <vector>

namespace zvonivec::skin {

namespace {

using Stroke = std::vector<Point>;

/// A letter in units of its own: the x-height is 2 units, the baseline lies at y = 0, up is
/// negative; the strokes' middles are given.
struct Letter {
    std::vector<Stroke> strokes;
    double width;
};

Stroke joined(Stroke first, const Stroke& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

Letter letter(char name) {
    switch (name) {
    case 'Z':
        return {{{{0, -2.8}, {1.9, -2.8}, {0, 0}, {2, 0}}}, 2};
    case 'v':
        return {{{{0, -2}, {0.85, 0}, {1.7, -2}}}, 1.7};
    case 'o':
        return {{arc({1, -1}, 1, 0, 24)}, 2};
    case 'n':
        return {{{{0, 0}, {0, -2}}, joined(arc({0.85, -1.15}, 0.85, 12, 24), {{1.7, 0}})}, 1.7};
    case 'i':
        return {{{{0, 0}, {0, -2}}, {{0, -2.9}, {0, -2.85}}}, 0};
    case 'e':
        return {{joined({{0.05, -1.02}, {1.95, -1.02}}, arc({1, -1}, 1, 24, 3))}, 2};
    case 'c':
        return {{arc({1, -1}, 1, 21, 3)}, 1.8};
    case 'm':
        return {{{{0, 0}, {0, -2}},
                 joined(arc({0.7, -1.3}, 0.7, 12, 24), {{1.4, 0}}),
                 joined(arc({2.1, -1.3}, 0.7, 12, 24), {{2.8, 0}})},
                2.8};
    case 'p':
        return {{{{0, -2}, {0, 0.9}}, arc({1, -1}, 1, 0, 24)}, 2};
    case '3':
        return {{joined(arc({0.75, -2.05}, 0.75, 14, 30), arc({0.75, -0.65}, 0.8, 18, 34))}, 1.5};
    default:
        return {{}, 1};
    }
}

/// A line of letters with its strokes placed.
class Lettering {
public:
    Lettering(std::string_view text, Point baseline, double unit, double gap, double weight)
        : weight_(weight) {
        double x = baseline.x;
        for (const char name : text) {
            const Letter drawn = letter(name);
            for (const Stroke& stroke : drawn.strokes) {
                Stroke placed;
                for (const Point point : stroke) {
                    placed.push_back({x + point.x * unit, baseline.y + point.y * unit});
                }
                strokes_.push_back(placed);
            }
            x += drawn.width * unit + gap;
        }
    }

    [[nodiscard]] double distance(Point p) const {
        double nearest = 1000;
        for (const Stroke& stroke : strokes_) {
            const double distance = polylineDistance(p, stroke);
            nearest = distance < nearest ? distance : nearest;
        }
        return nearest - weight_ / 2;
    }

private:
    std::vector<Stroke> strokes_;
    double weight_;
};

} // namespace

double wordmarkDistance(Point p) {
    static const Lettering NAME("Zvonivec", {71.5, 35.5}, 3.5, 3.5, 1.35);
    return p.y < 20 || p.y > 42 || p.x > 170 || p.x < 66 ? 1000 : NAME.distance(p);
}

double mp3Distance(Point p) {
    static const Lettering NAME("mp3", {4.4, 19.2}, 2.8, 2.7, 2.1);
    return NAME.distance(p);
}

} // namespace zvonivec::skin
