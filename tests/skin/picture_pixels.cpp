#include "tests/skin/picture_pixels.h"

#include "skin/pictures.h"

#include <QString>
#include <algorithm>
#include <gtest/gtest.h>

using namespace zvonivec::skin;

namespace skin_test {

QImage load(std::string_view file) {
    const QImage image(":/skin/" + QString::fromUtf8(file.data(), qsizetype(file.size())));
    EXPECT_FALSE(image.isNull()) << file;
    return image.convertToFormat(QImage::Format_ARGB32);
}

QImage listPicture(int number) {
    return load(LIST_PICTURES.at(static_cast<std::size_t>(number - 1)).file);
}

QImage roundButton(int button, State state) {
    return listPicture(FIRST_NUMBER.at(state) + button);
}

Pixels pixelsWhere(const QImage& image, const std::function<bool(QRgb)>& wanted) {
    Pixels found;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (wanted(image.pixel(x, y))) {
                found.emplace(x, y);
            }
        }
    }
    return found;
}

Pixels clearPixels(const QImage& image) {
    return pixelsWhere(image, [](QRgb pixel) { return qAlpha(pixel) == 0; });
}

Pixels drawnPixels(const QImage& image) {
    return pixelsWhere(image, [](QRgb pixel) { return qAlpha(pixel) != 0; });
}

Pixels pixelsOf(const QImage& image, QRgb colour) {
    return pixelsWhere(image, [&](QRgb pixel) { return pixel == colour; });
}

std::vector<std::string> rowsOf(const Pixels& pixels, const QRect& area) {
    std::vector<std::string> rows;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        std::string row;
        for (int x = area.left(); x <= area.right(); ++x) {
            row += pixels.contains({x, y}) ? '#' : '.';
        }
        rows.push_back(row);
    }
    return rows;
}

QRect boundsOf(const Pixels& pixels) {
    QRect bounds;
    for (const auto& [x, y] : pixels) {
        bounds |= QRect(x, y, 1, 1);
    }
    return bounds;
}

std::vector<std::string> shapeOf(const Pixels& pixels) {
    return rowsOf(pixels, boundsOf(pixels));
}

std::vector<std::string> mirrored(std::vector<std::string> rows) {
    for (std::string& row : rows) {
        std::ranges::reverse(row);
    }
    return rows;
}

} // namespace skin_test
