#include "skin/drawing/gif_writer.h"

#include <array>
#include <cstdint>
#include <map>
#include <vector>

namespace zvonivec::skin {

namespace {

void appendByte(std::string& out, unsigned value) {
    out += static_cast<char>(static_cast<unsigned char>(value));
}

void appendWord(std::string& out, int value) {
    appendByte(out, static_cast<unsigned>(value) & 255U);
    appendByte(out, (static_cast<unsigned>(value) >> 8U) & 255U);
}

/// Collects codes of a changing width, lowest bit first, into blocks of at most 255 bytes.
class CodeBlocks {
public:
    void append(unsigned code, unsigned width) {
        bits_ |= code << count_;
        count_ += width;
        while (count_ >= 8) {
            appendByte(bytes_, bits_ & 255U);
            bits_ >>= 8U;
            count_ -= 8;
        }
    }

    std::string finished() {
        if (count_ > 0) {
            appendByte(bytes_, bits_ & 255U);
        }
        std::string out;
        for (std::size_t start = 0; start < bytes_.size(); start += 255) {
            const std::string block = bytes_.substr(start, 255);
            appendByte(out, static_cast<unsigned>(block.size()));
            out += block;
        }
        appendByte(out, 0);
        return out;
    }

private:
    std::string bytes_;
    std::uint32_t bits_ = 0;
    unsigned count_ = 0;
};

/// Returns the indices in LZW codes, in blocks.
std::string compressed(const std::vector<std::uint8_t>& indices, unsigned depth) {
    constexpr unsigned codeLimit = 4096;
    constexpr std::uint16_t noCode = 0xFFFF;
    const unsigned clearCode = 1U << depth;
    const unsigned endCode = clearCode + 1;

    std::vector<std::array<std::uint16_t, 256>> next(codeLimit);
    unsigned nextCode = 0;
    unsigned width = 0;
    CodeBlocks blocks;

    const auto restart = [&] {
        for (auto& row : next) {
            row.fill(noCode);
        }
        nextCode = endCode + 1;
        width = depth + 1;
    };

    restart();
    blocks.append(clearCode, width);
    unsigned current = indices.front();
    for (std::size_t i = 1; i < indices.size(); ++i) {
        const std::uint8_t index = indices[i];
        const std::uint16_t known = next[current][index];
        if (known != noCode) {
            current = known;
            continue;
        }
        blocks.append(current, width);
        if (nextCode < codeLimit) {
            // A reader learns each code one step later than this writer. So the width grows when
            // the code just given doesn't fit, not when the next code wouldn't.
            if (nextCode == (1U << width)) {
                ++width;
            }
            next[current][index] = static_cast<std::uint16_t>(nextCode);
            ++nextCode;
        } else {
            blocks.append(clearCode, width);
            restart();
        }
        current = index;
    }
    blocks.append(current, width);
    if (nextCode == (1U << width) && width < 12) {
        ++width;
    }
    blocks.append(endCode, width);
    return blocks.finished();
}

/// A picture in numbers of a palette.
struct Indexed {
    std::vector<Rgba> palette;
    std::optional<unsigned> transparent; ///< the entry of the clear pixels, if there are any
    std::vector<std::uint8_t> indices;
};

/// Returns nothing when the picture needs more than 256 palette entries.
std::optional<Indexed> indexed(const Picture& picture) {
    constexpr Rgba transparentColour{255, 0, 255, 255};
    Indexed result;
    std::map<std::uint32_t, unsigned> numbers;
    const auto numberOf = [&](const Rgba& pixel) {
        const auto next = static_cast<unsigned>(result.palette.size());
        if (pixel.a == 0) {
            if (!result.transparent) {
                result.transparent = next;
                result.palette.push_back(transparentColour);
            }
            return *result.transparent;
        }
        const std::uint32_t key = (std::uint32_t{pixel.r} << 16U) | (std::uint32_t{pixel.g} << 8U) |
                                  std::uint32_t{pixel.b};
        const auto [place, isNew] = numbers.try_emplace(key, next);
        if (isNew) {
            result.palette.push_back(pixel);
        }
        return place->second;
    };
    result.indices.reserve(picture.pixels().size());
    for (const Rgba& pixel : picture.pixels()) {
        const unsigned number = numberOf(pixel);
        if (number > 255) {
            return std::nullopt;
        }
        result.indices.push_back(static_cast<std::uint8_t>(number));
    }
    return result;
}

/// Appends a palette of 2^depth entries.
void appendPalette(std::string& out, std::vector<Rgba> palette, unsigned depth) {
    palette.resize(std::size_t{1} << depth, Rgba{0, 0, 0, 255});
    for (const Rgba& colour : palette) {
        appendByte(out, colour.r);
        appendByte(out, colour.g);
        appendByte(out, colour.b);
    }
}

/// Appends the graphic control extension that names the transparent entry.
void appendTransparent(std::string& out, unsigned entry) {
    out += "\x21\xF9\x04\x01";
    appendWord(out, 0);
    appendByte(out, entry);
    appendByte(out, 0);
}

} // namespace

std::optional<std::string> gifBytes(const Picture& picture) {
    const std::optional<Indexed> image = indexed(picture);
    if (!image) {
        return std::nullopt;
    }
    unsigned depth = 1;
    while ((std::size_t{1} << depth) < image->palette.size()) {
        ++depth;
    }
    std::string out = "GIF89a";
    appendWord(out, picture.width());
    appendWord(out, picture.height());
    appendByte(out, 0xF0U | (depth - 1)); // a global palette of 2^depth entries
    appendByte(out, 0);
    appendByte(out, 0);
    appendPalette(out, image->palette, depth);
    if (image->transparent) {
        appendTransparent(out, *image->transparent);
    }
    out += '\x2C';
    appendWord(out, 0);
    appendWord(out, 0);
    appendWord(out, picture.width());
    appendWord(out, picture.height());
    appendByte(out, 0);
    const unsigned codeDepth = depth < 2 ? 2 : depth;
    appendByte(out, codeDepth);
    out += compressed(image->indices, codeDepth);
    out += '\x3B';
    return out;
}

} // namespace zvonivec::skin
