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
            // A reader learns each code one step later than this writer does, so the width grows
            // when the code just given doesn't fit any more, not when the next one wouldn't.
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

} // namespace

std::optional<std::string> gifBytes(const Picture& picture) {
    std::map<std::uint32_t, unsigned> numbers;
    std::vector<Rgba> palette;
    std::optional<unsigned> transparent;
    std::vector<std::uint8_t> indices;
    indices.reserve(picture.pixels().size());
    for (const Rgba& pixel : picture.pixels()) {
        unsigned number = 0;
        if (pixel.a == 0) {
            if (!transparent) {
                transparent = static_cast<unsigned>(palette.size());
                palette.push_back(Rgba{255, 0, 255, 255});
            }
            number = *transparent;
        } else {
            const std::uint32_t key = (std::uint32_t{pixel.r} << 16U) |
                                      (std::uint32_t{pixel.g} << 8U) | std::uint32_t{pixel.b};
            const auto [place, isNew] =
                numbers.try_emplace(key, static_cast<unsigned>(palette.size()));
            if (isNew) {
                palette.push_back(pixel);
            }
            number = place->second;
        }
        if (palette.size() > 256) {
            return std::nullopt;
        }
        indices.push_back(static_cast<std::uint8_t>(number));
    }

    unsigned depth = 1;
    while ((std::size_t{1} << depth) < palette.size()) {
        ++depth;
    }

    std::string out = "GIF89a";
    appendWord(out, picture.width());
    appendWord(out, picture.height());
    appendByte(out, 0xF0U | (depth - 1)); // a global palette of 2^depth entries
    appendByte(out, 0);
    appendByte(out, 0);
    palette.resize(std::size_t{1} << depth, Rgba{0, 0, 0, 255});
    for (const Rgba& colour : palette) {
        appendByte(out, colour.r);
        appendByte(out, colour.g);
        appendByte(out, colour.b);
    }
    if (transparent) {
        out += "\x21\xF9\x04\x01";
        appendWord(out, 0);
        appendByte(out, *transparent);
        appendByte(out, 0);
    }
    out += '\x2C';
    appendWord(out, 0);
    appendWord(out, 0);
    appendWord(out, picture.width());
    appendWord(out, picture.height());
    appendByte(out, 0);
    const unsigned codeDepth = depth < 2 ? 2 : depth;
    appendByte(out, codeDepth);
    out += compressed(indices, codeDepth);
    out += '\x3B';
    return out;
}

} // namespace zvonivec::skin
