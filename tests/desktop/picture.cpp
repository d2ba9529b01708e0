#include "tests/desktop/picture.h"

#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QString>
#include <algorithm>
#include <limits>

namespace support {

namespace {

/// The font that stands for "MS Sans Serif", 8.25 points at 96 dots per inch.
QFont labelFont(bool bold) {
    QFont font;
    font.setFamilies({QStringLiteral("MS Sans Serif"), QStringLiteral("Liberation Sans"),
                      QStringLiteral("sans-serif")});
    font.setStyleHint(QFont::SansSerif, static_cast<QFont::StyleStrategy>(
                                            QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    font.setHintingPreference(QFont::PreferFullHinting);
    font.setPixelSize(11);
    font.setBold(bold);
    return font;
}

constexpr int LINE_HEIGHT = 13;

} // namespace

Picture::Picture(const std::string& file)
    : Picture(QImage(QString::fromUtf8(SKIN_PICTURES) + u'/' + QString::fromStdString(file))) {}

Picture::Picture(const QImage& image) : width_(image.width()), height_(image.height()) {
    const QImage pixels = image.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < height_; ++y) {
        for (int x = 0; x < width_; ++x) {
            const QRgb pixel = pixels.pixel(x, y);
            pixels_.push_back(qAlpha(pixel) == 0 ? std::nullopt
                                                 : std::optional<Colour>(pixel & 0xFFFFFF));
        }
    }
}

QImage Picture::image() const {
    QImage result(width_, height_, QImage::Format_RGB32);
    for (int y = 0; y < height_; ++y) {
        for (int x = 0; x < width_; ++x) {
            result.setPixel(x, y, at(x, y).value_or(0));
        }
    }
    return result;
}

void Picture::write(const std::string& text, Point place, Colour colour, Style style) {
    QImage written = image();
    QPainter painter(&written);
    painter.setFont(labelFont(style.bold));
    painter.setPen(QColor(colour));
    const QString line = QString::fromStdString(text);
    const int width = painter.fontMetrics().horizontalAdvance(line);
    painter.drawText(
        QRect(style.endsThere ? place.x - width : place.x, place.y, width, LINE_HEIGHT),
        Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, line);
    painter.end();
    *this = Picture(written);
}

Picture Picture::part(const Rectangle& place) const {
    Picture result;
    result.width_ = place.width;
    result.height_ = place.height;
    for (int y = 0; y < place.height; ++y) {
        for (int x = 0; x < place.width; ++x) {
            result.pixels_.push_back(at(place.x + x, place.y + y));
        }
    }
    return result;
}

Picture Picture::filled(int width, int height, Colour colour) {
    Picture result;
    result.width_ = width;
    result.height_ = height;
    result.pixels_.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                          colour);
    return result;
}

Picture Picture::informationStrip(const std::string& text) {
    const QString line = QString::fromStdString(text);
    const QFont font = labelFont(true);
    const int width = QFontMetrics(font).horizontalAdvance(line);
    QImage strip(width + 1, LINE_HEIGHT + 1, QImage::Format_RGB32);
    strip.fill(QColor(0, 160, 192));
    QPainter painter(&strip);
    painter.setFont(font);
    const auto flags = Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine;
    // The shadow has nothing left of and above a stroke, so that no gap fills up.
    QImage letters(width + 2, LINE_HEIGHT + 3, QImage::Format_ARGB32_Premultiplied);
    letters.fill(Qt::transparent);
    QPainter onLetters(&letters);
    onLetters.setFont(font);
    onLetters.setPen(QColor(224, 224, 224));
    onLetters.drawText(QRect(0, 0, width, LINE_HEIGHT), flags, line);
    onLetters.end();
    QImage shadow = letters.copy(0, 0, width, LINE_HEIGHT);
    for (int y = 0; y < shadow.height(); ++y) {
        for (int x = 0; x < shadow.width(); ++x) {
            const int below = y + 2 < LINE_HEIGHT ? qAlpha(letters.pixel(x + 1, y + 2)) : 0;
            const int beside =
                x + 2 < width && y + 1 < LINE_HEIGHT ? qAlpha(letters.pixel(x + 2, y + 1)) : 0;
            const int left = 255 - std::max(below, beside);
            const QRgb whole = letters.pixel(x, y);
            shadow.setPixel(x, y,
                            qRgba(qRed(whole) * left / 255, qGreen(whole) * left / 255,
                                  qBlue(whole) * left / 255, qAlpha(whole) * left / 255));
        }
    }
    painter.drawImage(1, 1, shadow);
    painter.setPen(QColor(255, 255, 0));
    painter.drawText(QRect(0, 0, width, LINE_HEIGHT), flags, line);
    painter.end();
    return Picture(strip);
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
