#include "skin/drawing/geometry.h"

#include <cstdint>

namespace zvonivec::skin {

double smoothStep(double low, double high, double value) {
    const double t = clamped((value - low) / (high - low), 0, 1);
    return t * t * (3 - 2 * t);
}

double circleDistance(Point p, Point centre, double radius) {
    return length(p - centre) - radius;
}

double boxDistance(Point p, const Box& box, double radius) {
    const Point centre = box.centre();
    const double dx = std::fabs(p.x - centre.x) - ((box.right - box.left) / 2 - radius);
    const double dy = std::fabs(p.y - centre.y) - ((box.bottom - box.top) / 2 - radius);
    const Point outside{dx > 0 ? dx : 0, dy > 0 ? dy : 0};
    const double nearest = dx > dy ? dx : dy;
    return length(outside) + (nearest < 0 ? nearest : 0) - radius;
}

double segmentDistance(Point p, Point a, Point b) {
    const Point along = b - a;
    const double whole = dot(along, along);
    const double t = whole > 0 ? clamped(dot(p - a, along) / whole, 0, 1) : 0;
    return length(p - (a + along * t));
}

double polygonDistance(Point p, std::span<const Point> corners) {
    double nearest = dot(p - corners[0], p - corners[0]);
    bool inside = false;
    Point from = corners.back();
    for (const Point to : corners) {
        const Point along = to - from;
        const double t = clamped(dot(p - from, along) / dot(along, along), 0, 1);
        const Point gap = p - (from + along * t);
        const double squared = dot(gap, gap);
        nearest = squared < nearest ? squared : nearest;
        if ((from.y > p.y) != (to.y > p.y) && p.x < from.x + along.x * ((p.y - from.y) / along.y)) {
            inside = !inside;
        }
        from = to;
    }
    return inside ? -std::sqrt(nearest) : std::sqrt(nearest);
}

double polylineDistance(Point p, std::span<const Point> points) {
    double nearest = length(p - points[0]);
    for (std::size_t i = 1; i < points.size(); ++i) {
        const double distance = segmentDistance(p, points[i - 1], points[i]);
        nearest = distance < nearest ? distance : nearest;
    }
    return nearest;
}

double smoothUnion(double a, double b, double rounding) {
    const double share = clamped(0.5 + 0.5 * (b - a) / rounding, 0, 1);
    return mixed(b, a, share) - rounding * share * (1 - share);
}

Point onCircle(Point centre, double radius, int fifteenths) {
    // The cosines of 0, 15, 30 ... 90 degrees.
    constexpr std::array<double, 7> cosines{1.0,
                                            0.96592582628906829,
                                            0.86602540378443865,
                                            0.70710678118654752,
                                            0.5,
                                            0.25881904510252076,
                                            0.0};
    const int turn = ((fifteenths % 24) + 24) % 24;
    const auto quarter = static_cast<std::size_t>(turn / 6);
    const auto rest = static_cast<std::size_t>(turn % 6);
    const double near = cosines.at(rest) * radius;
    const double far = cosines.at(6 - rest) * radius;
    switch (quarter) {
    case 0:
        return {centre.x + near, centre.y + far};
    case 1:
        return {centre.x - far, centre.y + near};
    case 2:
        return {centre.x - near, centre.y - far};
    default:
        return {centre.x + far, centre.y - near};
    }
}

std::vector<Point> arc(Point centre, double radius, int fromFifteenths, int toFifteenths) {
    std::vector<Point> points;
    const int step = fromFifteenths <= toFifteenths ? 1 : -1;
    for (int turn = fromFifteenths; turn != toFifteenths + step; turn += step) {
        points.push_back(onCircle(centre, radius, turn));
    }
    return points;
}

bool contains(std::span<const WholePoint> corners, WholePoint p) {
    int winding = 0;
    WholePoint from = corners.back();
    for (const WholePoint to : corners) {
        const bool down = from.y <= p.y && p.y < to.y;
        const bool up = to.y <= p.y && p.y < from.y;
        if (down || up) {
            const WholePoint high = down ? from : to;
            const WholePoint low = down ? to : from;
            // The edge at this height is at or left of the point.
            if ((low.x - high.x) * (p.y - high.y) <= (p.x - high.x) * (low.y - high.y)) {
                winding += down ? 1 : -1;
            }
        }
        from = to;
    }
    return winding != 0;
}

namespace {

/// A value from -1 to 1 for every pair of whole numbers.
double scattered(std::int64_t x, std::int64_t y, unsigned seed) {
    std::uint32_t mix = static_cast<std::uint32_t>(x) * 0x9E3779B1U +
                        static_cast<std::uint32_t>(y) * 0x85EBCA77U + seed * 0xC2B2AE3DU;
    mix ^= mix >> 15U;
    mix *= 0x2C1B3C6DU;
    mix ^= mix >> 12U;
    mix *= 0x297A2D39U;
    mix ^= mix >> 15U;
    return static_cast<double>(mix) / 2147483647.5 - 1;
}

} // namespace

double noise(double x, double y, unsigned seed) {
    const double left = std::floor(x);
    const double top = std::floor(y);
    const auto column = static_cast<std::int64_t>(left);
    const auto row = static_cast<std::int64_t>(top);
    const double across = smoothStep(0, 1, x - left);
    const double down = smoothStep(0, 1, y - top);
    return mixed(
        mixed(scattered(column, row, seed), scattered(column + 1, row, seed), across),
        mixed(scattered(column, row + 1, seed), scattered(column + 1, row + 1, seed), across),
        down);
}

} // namespace zvonivec::skin
