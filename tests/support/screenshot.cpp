#include "tests/support/screenshot.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <algorithm>

namespace support {

Screenshot::Screenshot(const Display& display)
    : Screenshot(display, {0, 0, display.width(), display.height()}) {}

Screenshot::Screenshot(const Display& display, const Rectangle& place) {
    const int left = std::max(place.x, 0);
    const int top = std::max(place.y, 0);
    const int right = std::min(place.x + place.width, display.width());
    const int bottom = std::min(place.y + place.height, display.height());
    if (left >= right || top >= bottom) {
        return;
    }
    ::Display* connection = display.connection();
    XImage* image = XGetImage(connection, DefaultRootWindow(connection), left, top,
                              static_cast<unsigned>(right - left),
                              static_cast<unsigned>(bottom - top), AllPlanes, ZPixmap);
    if (image == nullptr) {
        return;
    }
    width_ = right - left;
    height_ = bottom - top;
    pixels_.reserve(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_));
    for (int y = 0; y < height_; ++y) {
        for (int x = 0; x < width_; ++x) {
            pixels_.push_back(static_cast<Colour>(XGetPixel(image, x, y) & 0xFFFFFF));
        }
    }
    XDestroyImage(image);
}

Colour Screenshot::at(int x, int y) const {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) {
        return 0;
    }
    return pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                   static_cast<std::size_t>(x)];
}

} // namespace support
