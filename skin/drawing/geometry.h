// Shapes as signed distances: negative inside, in units of the layout's pixels.
//
// Only + - * / and square roots are used, whose results are the same on every machine; sines and
// powers would differ in their last bits and with them, now and then, a pixel.
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
/// 0 up to low, 1 from high on, a soft step between; low may be the greater one.
double smoothStep(double low, double high, double value);

double circleDistance(Point p, Point centre, double radius);
double boxDistance(Point p, const Box& box, double radius);
double segmentDistance(Point p, Point a, Point b);
double polygonDistance(Point p, std::span<const Point> corners);
double polylineDistance(Point p, std::span<const Point> points);

/// The union of two shapes whose meeting corner is rounded over about that many pixels.
double smoothUnion(double a, double b, double rounding);

/// The point of a circle at a multiple of 15 degrees, clockwise from the right.
Point onCircle(Point centre, double radius, int fifteenths);
/// A part of a circle as a chain of points, 15 degrees apart.
std::vector<Point> arc(Point centre, double radius, int fromFifteenths, int toFifteenths);

/// True where a pixel's sample point lies in the polygon: left and top edges belong to it, right
/// and bottom edges don't. All numbers are whole, so nothing is rounded.
struct WholePoint {
    int x = 0;
    int y = 0;
};
bool contains(std::span<const WholePoint> corners, WholePoint p);

/// Smooth noise from -1 to 1 with features of about one unit.
double noise(double x, double y, unsigned seed);

} // namespace zvonivec::skin
