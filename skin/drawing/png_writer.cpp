#include "skin/drawing/png_writer.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace zvonivec::skin {

namespace {

using Bytes = std::vector<std::uint8_t>;

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

/// One deflate block with the fixed codes.
class Deflater {
public:
    std::string run(const Bytes& data) {
        bits(1, 1); // the last block
        bits(1, 2); // fixed codes
        std::vector<int> head(HASH_SIZE, -1);
        std::vector<int> previous(data.size(), -1);
        std::size_t at = 0;
        const auto remember = [&](std::size_t place) {
            if (place + MIN_MATCH <= data.size()) {
                const std::size_t hash = hashAt(data, place);
                previous[place] = head[hash];
                head[hash] = static_cast<int>(place);
            }
        };
        while (at < data.size()) {
            const Match match = longestMatch(data, at, head, previous);
            if (match.length >= MIN_MATCH) {
                length(match.length);
                distance(match.distance);
                for (std::size_t i = 0; i < match.length; ++i) {
                    remember(at + i);
                }
                at += match.length;
            } else {
                literal(data[at]);
                remember(at);
                ++at;
            }
        }
        literal(256);
        if (count_ > 0) {
            out_ += static_cast<char>(static_cast<unsigned char>(held_ & 255U));
        }
        return out_;
    }

private:
    struct Match {
        std::size_t length = 0;
        std::size_t distance = 0;
    };
    struct Range {
        unsigned base;
        unsigned extraBits;
    };
    static constexpr std::size_t HASH_SIZE = 1U << 14U;
    static constexpr std::size_t MIN_MATCH = 3;
    static constexpr std::size_t MAX_MATCH = 258;
    static constexpr std::size_t WINDOW = 32768;
    static constexpr int MAX_CHAIN = 96;
    static constexpr std::array<Range, 29> LENGTHS{
        {{3, 0},   {4, 0},   {5, 0},   {6, 0},   {7, 0},  {8, 0},  {9, 0},  {10, 0},
         {11, 1},  {13, 1},  {15, 1},  {17, 1},  {19, 2}, {23, 2}, {27, 2}, {31, 2},
         {35, 3},  {43, 3},  {51, 3},  {59, 3},  {67, 4}, {83, 4}, {99, 4}, {115, 4},
         {131, 5}, {163, 5}, {195, 5}, {227, 5}, {258, 0}}};
    static constexpr std::array<Range, 30> DISTANCES{
        {{1, 0},     {2, 0},     {3, 0},     {4, 0},      {5, 1},      {7, 1},
         {9, 2},     {13, 2},    {17, 3},    {25, 3},     {33, 4},     {49, 4},
         {65, 5},    {97, 5},    {129, 6},   {193, 6},    {257, 7},    {385, 7},
         {513, 8},   {769, 8},   {1025, 9},  {1537, 9},   {2049, 10},  {3073, 10},
         {4097, 11}, {6145, 11}, {8193, 12}, {12289, 12}, {16385, 13}, {24577, 13}}};

    static std::size_t hashAt(const Bytes& data, std::size_t at) {
        const unsigned mixed = (unsigned{data[at]} << 10U) ^ (unsigned{data[at + 1]} << 5U) ^
                               unsigned { data[at + 2] };
        return mixed % HASH_SIZE;
    }

    static Match longestMatch(const Bytes& data, std::size_t at, const std::vector<int>& head,
                              const std::vector<int>& previous) {
        Match best;
        if (at + MIN_MATCH > data.size()) {
            return best;
        }
        const std::size_t limit = std::min(MAX_MATCH, data.size() - at);
        int candidate = head[hashAt(data, at)];
        for (int step = 0; step < MAX_CHAIN && candidate >= 0; ++step) {
            const auto from = static_cast<std::size_t>(candidate);
            if (at - from > WINDOW) {
                break;
            }
            std::size_t length = 0;
            while (length < limit && data[from + length] == data[at + length]) {
                ++length;
            }
            if (length > best.length) {
                best = {length, at - from};
            }
            candidate = previous[from];
        }
        return best;
    }

    void bits(unsigned value, unsigned width) {
        held_ |= std::uint64_t{value} << count_;
        count_ += width;
        while (count_ >= 8) {
            out_ += static_cast<char>(static_cast<unsigned char>(held_ & 255U));
            held_ >>= 8U;
            count_ -= 8;
        }
    }

    /// Huffman codes go in with their highest bit first, all other numbers with their lowest.
    void code(unsigned value, unsigned width) {
        unsigned turned = 0;
        for (unsigned i = 0; i < width; ++i) {
            turned |= ((value >> i) & 1U) << (width - 1 - i);
        }
        bits(turned, width);
    }

    void literal(unsigned symbol) {
        if (symbol < 144) {
            code(0x30 + symbol, 8);
        } else if (symbol < 256) {
            code(0x190 + symbol - 144, 9);
        } else if (symbol < 280) {
            code(symbol - 256, 7);
        } else {
            code(0xC0 + symbol - 280, 8);
        }
    }

    void length(std::size_t value) {
        std::size_t entry = LENGTHS.size() - 1;
        while (LENGTHS[entry].base > value) {
            --entry;
        }
        literal(257 + static_cast<unsigned>(entry));
        bits(static_cast<unsigned>(value) - LENGTHS[entry].base, LENGTHS[entry].extraBits);
    }

    void distance(std::size_t value) {
        std::size_t entry = DISTANCES.size() - 1;
        while (DISTANCES[entry].base > value) {
            --entry;
        }
        code(static_cast<unsigned>(entry), 5);
        bits(static_cast<unsigned>(value) - DISTANCES[entry].base, DISTANCES[entry].extraBits);
    }

    std::string out_;
    std::uint64_t held_ = 0;
    unsigned count_ = 0;
};

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

} // namespace

std::string pngBytes(const Picture& picture) {
    const auto rowSize = static_cast<std::size_t>(picture.width()) * 4;
    Bytes filtered;
    Bytes above(rowSize, 0);
    for (int y = 0; y < picture.height(); ++y) {
        Bytes row;
        for (int x = 0; x < picture.width(); ++x) {
            const Rgba& pixel = picture.at(x, y);
            row.insert(row.end(), {pixel.r, pixel.g, pixel.b, pixel.a});
        }
        const Bytes best = filteredRow(row, above);
        filtered.insert(filtered.end(), best.begin(), best.end());
        above = row;
    }

    std::string header;
    appendLong(header, static_cast<std::uint32_t>(picture.width()));
    appendLong(header, static_cast<std::uint32_t>(picture.height()));
    header += std::string("\x08\x06\x00\x00\x00", 5);

    std::string data("\x78\x01", 2);
    data += Deflater().run(filtered);
    appendLong(data, adler32(filtered));

    std::string out("\x89PNG\r\n\x1A\n", 8);
    appendChunk(out, "IHDR", header);
    appendChunk(out, "IDAT", data);
    appendChunk(out, "IEND", {});
    return out;
}

} // namespace zvonivec::skin
