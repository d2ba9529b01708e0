#include "skin/drawing/png_writer.h"

#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QImageWriter>
#include <QList>
#include <map>

namespace zvonivec::skin {

namespace {

constexpr std::size_t MOST_COLOURS = 256;

QRgb valueOf(const Rgba& pixel) {
    return qRgba(pixel.r, pixel.g, pixel.b, pixel.a);
}

QImage inFullColour(const Picture& picture) {
    QImage image(picture.width(), picture.height(), QImage::Format_ARGB32);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            image.setPixel(x, y, valueOf(picture.at(x, y)));
        }
    }
    return image;
}

/// Returns nothing when the picture has too many colours.
std::optional<QImage> inPalette(const Picture& picture) {
    // Transparent colours sort first. PNG lists the alpha of the entries up to the last transparent
    // one, so the list stays short.
    std::map<QRgb, int> numbers;
    for (const Rgba& pixel : picture.pixels()) {
        numbers.emplace(valueOf(pixel), 0);
        if (numbers.size() > MOST_COLOURS) {
            return std::nullopt;
        }
    }
    QList<QRgb> palette;
    for (auto& [value, number] : numbers) {
        number = static_cast<int>(palette.size());
        palette.append(value);
    }
    QImage image(picture.width(), picture.height(), QImage::Format_Indexed8);
    image.setColorTable(palette);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            image.setPixel(x, y, static_cast<uint>(numbers.at(valueOf(picture.at(x, y)))));
        }
    }
    return image;
}

std::optional<std::string> fileOf(const QImage& image) {
    constexpr int smallest = 100;
    QBuffer buffer;
    QImageWriter writer(&buffer, "png");
    writer.setCompression(smallest);
    if (!writer.write(image)) {
        return std::nullopt;
    }
    return buffer.data().toStdString();
}

} // namespace

std::optional<std::string> pngBytes(const Picture& picture) {
    const std::optional<std::string> full = fileOf(inFullColour(picture));
    const std::optional<QImage> image = inPalette(picture);
    const std::optional<std::string> small = image ? fileOf(*image) : std::nullopt;
    // The palette of a picture with few pixels may be bigger than what it saves.
    return small && full && small->size() < full->size() ? small : full;
}

} // namespace zvonivec::skin
