#include "skin/drawing/lettering.h"

#include <string_view>
#include <vector>

namespace zvonivec::skin {

namespace {

using Stroke = std::vector<Point>;

/// A letter in units of its own: the x-height is 2 units, the baseline lies at y = 0, up is
/// negative. The strokes run along the middles of the lines.
struct Letter {
    std::vector<Stroke> strokes;
    double width;
    /// What the letter gives up on either side. A round or slanting letter stands closer to its
    /// neighbours than a straight one.
    double tight = 0;
};

Stroke joined(Stroke first, const Stroke& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// A letter of the maker's name or of the logo.
Letter nameLetter(char name) {
    switch (name) {
    case 'Z':
        return {{{{0, -2.8}, {1.9, -2.8}, {0, 0}, {2, 0}}}, 2, 0.05};
    case 'v':
        return {{{{0, -2}, {0.85, 0}, {1.7, -2}}}, 1.7, 0.2};
    case 'o':
        return {{arc({1, -1}, 1, 0, 24)}, 2, 0.12};
    case 'n':
        return {{{{0, 0}, {0, -2}}, joined(arc({0.85, -1.15}, 0.85, 12, 24), {{1.7, 0}})}, 1.7};
    case 'i':
        return {{{{0, 0}, {0, -2}}, {{0, -2.9}, {0, -2.85}}}, 0};
    case 'e':
        return {{joined({{0.05, -1.02}, {1.95, -1.02}}, arc({1, -1}, 1, 24, 3))}, 2, 0.12};
    case 'c':
        return {{arc({1, -1}, 1, 21, 3)}, 1.8, 0.12};
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

/// A capital for the small print: 2 units high, on a grid whose lines fall on whole pixels.
Letter capital(char name) {
    switch (name) {
    case 'M':
        return {{{{0, 0}, {0, -2}, {1, -0.9}, {2, -2}, {2, 0}}}, 2};
    case 'P':
        return {{{{0, 0}, {0, -2}, {1.1, -2}, {1.5, -1.5}, {1.1, -1}, {0, -1}}}, 1.5};
    case 'E':
        return {{{{1.5, -2}, {0, -2}, {0, 0}, {1.5, 0}}, {{0, -1}, {1.2, -1}}}, 1.5};
    case 'R':
        return {
            {{{0, 0}, {0, -2}, {1.1, -2}, {1.5, -1.5}, {1.1, -1}, {0, -1}}, {{0.7, -1}, {1.5, 0}}},
            1.5};
    case 'L':
        return {{{{0, -2}, {0, 0}, {1.5, 0}}}, 1.5};
    case 'A':
        return {{{{0, 0}, {0, -1.2}, {0.75, -2}, {1.5, -1.2}, {1.5, 0}}, {{0, -0.7}, {1.5, -0.7}}},
                1.5};
    case 'Y':
        return {{{{0, -2}, {0.75, -1}, {1.5, -2}}, {{0.75, -1}, {0.75, 0}}}, 1.5};
    case 'T':
        return {{{{0, -2}, {1.5, -2}}, {{0.75, -2}, {0.75, 0}}}, 1.5};
    case 'I':
        return {{{{0, 0}, {0, -2}}}, 0};
    case 'D':
        return {{{{0, 0}, {0, -2}, {1.0, -2}, {1.5, -1.5}, {1.5, -0.5}, {1.0, 0}, {0, 0}}}, 1.5};
    case 'G':
        return {{{{1.5, -2},
                  {0.4, -2},
                  {0, -1.5},
                  {0, -0.5},
                  {0.4, 0},
                  {1.5, 0},
                  {1.5, -1},
                  {0.9, -1}}},
                1.5};
    case 'U':
        return {{{{0, -2}, {0, -0.4}, {0.4, 0}, {1.1, 0}, {1.5, -0.4}, {1.5, -2}}}, 1.5};
    case 'O':
        return {{{{0.4, -2},
                  {1.1, -2},
                  {1.5, -1.6},
                  {1.5, -0.4},
                  {1.1, 0},
                  {0.4, 0},
                  {0, -0.4},
                  {0, -1.6},
                  {0.4, -2}}},
                1.5};
    default:
        return {{}, 1};
    }
}

/// A line of letters with its strokes placed.
class Lettering {
public:
    Lettering(std::string_view text, Letter (*letter)(char), Point baseline, double unit,
              double gap, double weight)
        : weight_(weight) {
        double x = baseline.x;
        for (const char name : text) {
            const Letter drawn = letter(name);
            x -= drawn.tight * unit;
            for (const Stroke& stroke : drawn.strokes) {
                Stroke placed;
                for (const Point point : stroke) {
                    placed.push_back({x + point.x * unit, baseline.y + point.y * unit});
                }
                strokes_.push_back(placed);
            }
            x += (drawn.width - drawn.tight) * unit + gap;
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
    static const Lettering name("Zvonivec", nameLetter, {71.5, 35.5}, 3.5, 3.4, 1.5);
    return p.y < 20 || p.y > 42 || p.x > 170 || p.x < 66 ? 1000 : name.distance(p);
}

double smallPrintDistance(Point p) {
    static const Lettering print("DIGITAL AUDIO", capital, {135.5, 322.5}, 2, 3, 1);
    return p.y < 315 || p.y > 326 || p.x > 220 || p.x < 110 ? 1000 : print.distance(p);
}

double mp3Distance(Point p) {
    static const Lettering name("mp3", nameLetter, {4.4, 19.2}, 2.8, 2.7, 2.1);
    return name.distance(p);
}

} // namespace zvonivec::skin
