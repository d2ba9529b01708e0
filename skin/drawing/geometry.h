// Shapes as signed distances: negative inside, in units of the layout's pixels.
//
// Only + - * / and square roots are used, because their results are the same on every machine.
// Sines and powers would differ in their last bits and change a pixel now and then.
#pragma once

#include <array>
#include <cmath>
#include <span>
#include <vector>

namespace zvonivec::skin {

struct Point {
    double x = 0;
    double y = 0;
    friend Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
    friend Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
    friend Point operator*(Point a, double k) { return {a.x * k, a.y * k}; }
};

inline double dot(Point a, Point b) {
    return a.x * b.x + a.y * b.y;
}
inline double length(Point a) {
    return std::sqrt(dot(a, a));
}

struct Box {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    [[nodiscard]] constexpr Point centre() const {
        return {(left + right) / 2, (top + bottom) / 2};
    }
};

inline double clamped(double value, double low, double high) {
    return value < low ? low : (value > high ? high : value);
}
inline double mixed(double a, double b, double share) {
    return a + (b - a) * share;
}
/// Returns 0 up to low, 1 from high on, and a soft step between. Low may be greater than high.
double smoothStep(double low, double high, double value);

double circleDistance(Point p, Point centre, double radius);
double boxDistance(Point p, const Box& box, double radius);
double segmentDistance(Point p, Point a, Point b);
double polygonDistance(Point p, std::span<const Point> corners);
double polylineDistance(Point p, std::span<const Point> points);

/// Returns the distance to the union of two shapes, with a rounded corner where they meet.
double smoothUnion(double a, double b, double rounding);

/// Returns the point of a circle at a multiple of 15 degrees, clockwise from the right.
Point onCircle(Point centre, double radius, int fifteenths);
/// Returns a part of a circle as a chain of points, 15 degrees apart.
std::vector<Point> arc(Point centre, double radius, int fromFifteenths, int toFifteenths);

struct WholePoint {
    int x = 0;
    int y = 0;
};
/// Returns whether a pixel belongs to the polygon. Left and top edges belong to it, right and
/// bottom edges don't.
bool contains(std::span<const WholePoint> corners, WholePoint p);

/// Returns smooth noise from -1 to 1 with features of about one unit.
double noise(double x, double y, unsigned seed);

} // namespace zvonivec::skin
