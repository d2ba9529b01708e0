#include "tests/desktop/picture.h"

#include <QImage>
#include <QString>
#include <limits>

namespace support {

Picture::Picture(const std::string& file) {
    const QImage image =
        QImage(QString::fromUtf8(SKIN_PICTURES) + u'/' + QString::fromStdString(file))
            .convertToFormat(QImage::Format_ARGB32);
    width_ = image.width();
    height_ = image.height();
    for (int y = 0; y < height_; ++y) {
        for (int x = 0; x < width_; ++x) {
            const QRgb pixel = image.pixel(x, y);
            pixels_.push_back(qAlpha(pixel) == 0 ? std::nullopt
                                                 : std::optional<Colour>(pixel & 0xFFFFFF));
        }
    }
}

std::optional<Colour> Picture::at(int x, int y) const {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) {
        return std::nullopt;
    }
    return pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                   static_cast<std::size_t>(x)];
}

void Picture::put(const Picture& picture, Point place) {
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (const auto colour = picture.at(x, y)) {
                pixels_[static_cast<std::size_t>(place.y + y) * static_cast<std::size_t>(width_) +
                        static_cast<std::size_t>(place.x + x)] = colour;
            }
        }
    }
}

int differentPixels(const Screenshot& screenshot, const Picture& picture, Point place) {
    if (picture.width() == 0) {
        return std::numeric_limits<int>::max();
    }
    int different = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const auto colour = picture.at(x, y);
            if (colour && *colour != screenshot.at(place.x + x, place.y + y)) {
                ++different;
            }
        }
    }
    return different;
}

void save(const Screenshot& screenshot, const std::string& file) {
    QImage image(screenshot.width(), screenshot.height(), QImage::Format_RGB32);
    for (int y = 0; y < screenshot.height(); ++y) {
        for (int x = 0; x < screenshot.width(); ++x) {
            image.setPixel(x, y, screenshot.at(x, y));
        }
    }
    image.save(QString::fromStdString(file));
}

} // namespace support
