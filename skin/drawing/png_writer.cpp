#include "skin/drawing/png_writer.h"

#include "skin/drawing/deflate.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <vector>

namespace zvonivec::skin {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t MOST_COLOURS = 256;

void appendLong(std::string& out, std::uint32_t value) {
    for (unsigned shift = 32; shift > 0;) {
        shift -= 8;
        out += static_cast<char>(static_cast<unsigned char>((value >> shift) & 255U));
    }
}

std::uint32_t crc32(const std::string& bytes) {
    std::uint32_t crc = 0xFFFFFFFFU;
    for (const char c : bytes) {
        crc ^= static_cast<unsigned char>(c);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0U);
        }
    }
    return ~crc;
}

std::uint32_t adler32(const Bytes& bytes) {
    std::uint32_t low = 1;
    std::uint32_t high = 0;
    for (const std::uint8_t byte : bytes) {
        low = (low + byte) % 65521U;
        high = (high + low) % 65521U;
    }
    return (high << 16U) | low;
}

void appendChunk(std::string& out, const std::string& kind, const std::string& data) {
    appendLong(out, static_cast<std::uint32_t>(data.size()));
    out += kind;
    out += data;
    appendLong(out, crc32(kind + data));
}

int paeth(int left, int up, int corner) {
    const int guess = left + up - corner;
    const int toLeft = std::abs(guess - left);
    const int toUp = std::abs(guess - up);
    const int toCorner = std::abs(guess - corner);
    if (toLeft <= toUp && toLeft <= toCorner) {
        return left;
    }
    return toUp <= toCorner ? up : corner;
}

/// Filters a row in all five ways and keeps the one whose bytes are smallest.
Bytes filteredRow(const Bytes& row, const Bytes& above) {
    Bytes best;
    int bestSum = 0;
    for (int filter = 0; filter < 5; ++filter) {
        Bytes trial{static_cast<std::uint8_t>(filter)};
        int sum = 0;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const int left = i >= 4 ? row[i - 4] : 0;
            const int up = above[i];
            const int corner = i >= 4 ? above[i - 4] : 0;
            const std::array<int, 5> guesses{0, left, up, (left + up) / 2, paeth(left, up, corner)};
            const auto value = static_cast<std::uint8_t>(
                static_cast<unsigned>(row[i] - guesses.at(static_cast<std::size_t>(filter))) &
                255U);
            trial.push_back(value);
            sum += value < 128 ? value : 256 - value;
        }
        if (best.empty() || sum < bestSum) {
            best = trial;
            bestSum = sum;
        }
    }
    return best;
}

/// The data of a picture in one of PNG's colour types, each row behind the number of its filter.
struct Encoded {
    unsigned colourType = 0;
    Bytes rows;
    std::string palette;
    std::string transparency;
};

Encoded inFullColour(const Picture& picture) {
    constexpr unsigned redGreenBlueAlpha = 6;
    Encoded encoded{redGreenBlueAlpha, {}, {}, {}};
    Bytes above(static_cast<std::size_t>(picture.width()) * 4, 0);
    for (int y = 0; y < picture.height(); ++y) {
        Bytes row;
        for (int x = 0; x < picture.width(); ++x) {
            const Rgba& pixel = picture.at(x, y);
            row.insert(row.end(), {pixel.r, pixel.g, pixel.b, pixel.a});
        }
        const Bytes best = filteredRow(row, above);
        encoded.rows.insert(encoded.rows.end(), best.begin(), best.end());
        above = row;
    }
    return encoded;
}

std::uint32_t keyOf(const Rgba& pixel) {
    // Transparent colours sort first, so that their entries are the only ones with an alpha.
    return (std::uint32_t{pixel.a} << 24U) | (std::uint32_t{pixel.r} << 16U) |
           (std::uint32_t{pixel.g} << 8U) | std::uint32_t{pixel.b};
}

/// Nothing where the picture has too many colours.
std::optional<Encoded> inPalette(const Picture& picture) {
    constexpr unsigned palette = 3;
    std::map<std::uint32_t, std::uint8_t> numbers;
    for (const Rgba& pixel : picture.pixels()) {
        numbers.emplace(keyOf(pixel), std::uint8_t{0});
        if (numbers.size() > MOST_COLOURS) {
            return std::nullopt;
        }
    }
    Encoded encoded{palette, {}, {}, {}};
    std::uint8_t next = 0;
    for (auto& [key, number] : numbers) {
        number = next++;
        const auto append = [key = key](std::string& to, unsigned shift) {
            to += static_cast<char>(static_cast<unsigned char>((key >> shift) & 255U));
        };
        append(encoded.palette, 16);
        append(encoded.palette, 8);
        append(encoded.palette, 0);
        if ((key >> 24U) != 255U) {
            append(encoded.transparency, 24);
        }
    }
    for (int y = 0; y < picture.height(); ++y) {
        encoded.rows.push_back(0); // neighbouring numbers say nothing about each other
        for (int x = 0; x < picture.width(); ++x) {
            encoded.rows.push_back(numbers.at(keyOf(picture.at(x, y))));
        }
    }
    return encoded;
}

std::string fileOf(const Picture& picture, const Encoded& encoded) {
    std::string header;
    appendLong(header, static_cast<std::uint32_t>(picture.width()));
    appendLong(header, static_cast<std::uint32_t>(picture.height()));
    header += '\x08'; // bits of a channel, or of a number in the palette
    header += static_cast<char>(encoded.colourType);
    header += std::string("\x00\x00\x00", 3);

    std::string data("\x78\x01", 2);
    data += deflated(encoded.rows);
    appendLong(data, adler32(encoded.rows));

    std::string out("\x89PNG\r\n\x1A\n", 8);
    appendChunk(out, "IHDR", header);
    if (!encoded.palette.empty()) {
        appendChunk(out, "PLTE", encoded.palette);
    }
    if (!encoded.transparency.empty()) {
        appendChunk(out, "tRNS", encoded.transparency);
    }
    appendChunk(out, "IDAT", data);
    appendChunk(out, "IEND", {});
    return out;
}

} // namespace

std::string pngBytes(const Picture& picture) {
    // Of a few pixels a palette may be the bigger part.
    std::string best = fileOf(picture, inFullColour(picture));
    if (const std::optional<Encoded> encoded = inPalette(picture)) {
        const std::string other = fileOf(picture, *encoded);
        best = other.size() < best.size() ? other : best;
    }
    return best;
}

} // namespace zvonivec::skin
