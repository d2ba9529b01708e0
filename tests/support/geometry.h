// Places on the screen, in pixels.
#pragma once

namespace support {

struct Point {
    int x = 0;
    int y = 0;
    friend bool operator==(const Point&, const Point&) = default;
};

/// The right and bottom edges lie outside.
struct Rectangle {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    [[nodiscard]] Point middle() const { return {x + width / 2, y + height / 2}; }
    [[nodiscard]] bool contains(Point place) const {
        return place.x >= x && place.x < x + width && place.y >= y && place.y < y + height;
    }
    [[nodiscard]] Rectangle movedBy(Point offset) const {
        return {x + offset.x, y + offset.y, width, height};
    }
    friend bool operator==(const Rectangle&, const Rectangle&) = default;
};

} // namespace support
