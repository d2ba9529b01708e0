#include "tests/skin/picture_file.h"

#include "tests/support/process.h"

#include <QImage>
#include <QImageReader>
#include <QString>
#include <cstddef>
#include <vector>

namespace skin_test {

namespace {

/// Every image of the file, with its palette where the format's decoder keeps one. Empty when a
/// part of the file can't be read.
std::vector<QImage> imagesIn(const std::string& path) {
    QImageReader reader(QString::fromStdString(path));
    std::vector<QImage> images;
    const int count = reader.imageCount();
    for (int i = 0; i < count; ++i) {
        if (i > 0 && !reader.jumpToImage(i)) {
            return {};
        }
        images.push_back(reader.read());
        if (images.back().isNull()) {
            return {};
        }
    }
    return images;
}

std::string differenceOf(const QImage& image, const QImage& other) {
    if (image.size() != other.size()) {
        return "size";
    }
    if (image.format() != other.format()) {
        return "pixel format";
    }
    if (image.colorTable() != other.colorTable()) {
        return "palette";
    }
    return image == other ? "" : "pixels";
}

} // namespace

GifFacts readGif(const std::string& path) {
    const std::string bytes = support::readFile(path);
    const auto byte = [&](std::size_t at) {
        return static_cast<int>(static_cast<unsigned char>(bytes.at(at)));
    };
    GifFacts facts;
    facts.isGif = bytes.starts_with("GIF89a");
    facts.width = byte(6) + 256 * byte(7);
    facts.height = byte(8) + 256 * byte(9);
    facts.paletteSize = 2 << (byte(10) & 7);
    std::size_t at = 13 + static_cast<std::size_t>(facts.paletteSize) * 3;
    facts.head = bytes.substr(0, at);
    const auto skipBlocks = [&] {
        while (byte(at) != 0) {
            at += static_cast<std::size_t>(byte(at)) + 1;
        }
        ++at;
    };
    while (byte(at) != 0x3B) {
        const std::size_t begin = at;
        if (byte(at) == 0x21) {
            if (byte(at + 1) == 0xF9 && (byte(at + 3) & 1) != 0) {
                ++facts.transparentEntries;
            }
            at += 2;
            skipBlocks();
            facts.head += bytes.substr(begin, at - begin);
        } else {
            ++facts.images;
            at += 11;
            facts.head += bytes.substr(begin, at - begin);
            skipBlocks();
        }
    }
    return facts;
}

std::string differenceOf(const std::string& path, const std::string& other) {
    if (path.ends_with(".gif") && readGif(path).head != readGif(other).head) {
        return "palette or transparent entry";
    }
    const std::vector<QImage> images = imagesIn(path);
    const std::vector<QImage> others = imagesIn(other);
    if (images.empty() || images.size() != others.size()) {
        return "number of images";
    }
    for (std::size_t i = 0; i < images.size(); ++i) {
        const std::string difference = differenceOf(images[i], others[i]);
        if (!difference.empty()) {
            return difference + " of image " + std::to_string(i + 1);
        }
    }
    return {};
}

} // namespace skin_test
