#include "skin/drawing/deflate.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <queue>
#include <span>
#include <utility>

namespace zvonivec::skin {

namespace {

using Bytes = std::vector<std::uint8_t>;

/// A literal (distance 0, length the byte) or a copy of what stands that far back.
struct Token {
    std::uint16_t length = 0;
    std::uint16_t distance = 0;
};

// --- finding what repeats ---

class Matcher {
public:
    explicit Matcher(const Bytes& data)
        : data_(data), head_(HASH_SIZE, -1), previous_(data.size(), -1) {}

    std::vector<Token> run() {
        std::vector<Token> tokens;
        std::size_t at = 0;
        Token found = longest(at);
        while (at < data_.size()) {
            remember(at);
            // A copy waits when the one that starts a byte later is longer.
            const Token next = at + 1 < data_.size() ? longest(at + 1) : Token{};
            if (found.distance == 0 || next.length > found.length) {
                tokens.push_back({data_[at], 0});
                ++at;
                found = next;
                continue;
            }
            tokens.push_back(found);
            for (std::size_t i = 1; i < found.length; ++i) {
                remember(at + i);
            }
            at += found.length;
            found = longest(at);
        }
        return tokens;
    }

private:
    static constexpr std::size_t HASH_SIZE = 1U << 15U;
    static constexpr std::size_t MIN_MATCH = 3;
    static constexpr std::size_t MAX_MATCH = 258;
    static constexpr std::size_t WINDOW = 32768;
    /// A copy of three bytes from farther away takes more bits than the bytes.
    static constexpr std::size_t NEAR = 4096;
    static constexpr int MAX_CHAIN = 256;

    [[nodiscard]] std::size_t hashAt(std::size_t at) const {
        const unsigned mixed = (unsigned{data_[at]} << 10U) ^ (unsigned{data_[at + 1]} << 5U) ^
                               unsigned { data_[at + 2] };
        return mixed % HASH_SIZE;
    }

    void remember(std::size_t at) {
        if (at + MIN_MATCH <= data_.size()) {
            const std::size_t hash = hashAt(at);
            previous_[at] = head_[hash];
            head_[hash] = static_cast<int>(at);
        }
    }

    [[nodiscard]] Token longest(std::size_t at) const {
        Token best;
        if (at + MIN_MATCH > data_.size()) {
            return best;
        }
        const std::size_t limit = std::min(MAX_MATCH, data_.size() - at);
        int candidate = head_[hashAt(at)];
        for (int step = 0; step < MAX_CHAIN && candidate >= 0; ++step) {
            const auto from = static_cast<std::size_t>(candidate);
            if (at - from > WINDOW) {
                break;
            }
            std::size_t length = 0;
            while (length < limit && data_[from + length] == data_[at + length]) {
                ++length;
            }
            if (length > best.length && (length > MIN_MATCH || at - from <= NEAR) &&
                length >= MIN_MATCH) {
                best = {static_cast<std::uint16_t>(length), static_cast<std::uint16_t>(at - from)};
            }
            candidate = previous_[from];
        }
        return best;
    }

    const Bytes& data_;
    std::vector<int> head_;
    std::vector<int> previous_;
};

// --- Huffman codes ---

using Lengths = std::vector<unsigned>;

/// Code lengths of symbols that occur so often, none above the limit; 0 for those that don't.
Lengths codeLengths(std::vector<std::size_t> counts, unsigned limit) {
    /// How often, and a number that makes the order of equal counts one and the same everywhere.
    using Node = std::pair<std::size_t, std::size_t>;
    const std::size_t symbols = counts.size();
    while (true) {
        std::priority_queue<Node, std::vector<Node>, std::greater<>> open;
        for (std::size_t i = 0; i < symbols; ++i) {
            if (counts[i] > 0) {
                open.emplace(counts[i], i);
            }
        }
        Lengths lengths(symbols, 0);
        if (open.size() == 1) {
            lengths[open.top().second] = 1;
        }
        if (open.size() <= 1) {
            return lengths;
        }
        std::vector<std::size_t> parent(symbols * 2, 0);
        std::size_t next = symbols;
        while (open.size() > 1) {
            const Node a = open.top();
            open.pop();
            const Node b = open.top();
            open.pop();
            parent[a.second] = next;
            parent[b.second] = next;
            open.emplace(a.first + b.first, next);
            ++next;
        }
        const std::size_t root = next - 1;
        for (std::size_t i = 0; i < symbols; ++i) {
            for (std::size_t at = i; counts[i] > 0 && at != root; at = parent[at]) {
                ++lengths[i];
            }
        }
        if (*std::max_element(lengths.begin(), lengths.end()) <= limit) {
            return lengths;
        }
        // Rarer symbols come nearer to the others until the tree is flat enough.
        for (std::size_t& count : counts) {
            count = (count + 1) / 2;
        }
    }
}

/// The codes that belong to the lengths, in the order that the format fixes.
std::vector<unsigned> codesOf(const Lengths& lengths) {
    std::vector<unsigned> codes(lengths.size(), 0);
    unsigned code = 0;
    for (unsigned length = 1; length <= 15; ++length) {
        code <<= 1U;
        for (std::size_t i = 0; i < lengths.size(); ++i) {
            if (lengths[i] == length) {
                codes[i] = code++;
            }
        }
    }
    return codes;
}

// --- writing ---

struct Range {
    unsigned base;
    unsigned extraBits;
};
constexpr std::array<Range, 29> LENGTHS{
    {{3, 0},  {4, 0},  {5, 0},  {6, 0},   {7, 0},   {8, 0},   {9, 0},   {10, 0},  {11, 1}, {13, 1},
     {15, 1}, {17, 1}, {19, 2}, {23, 2},  {27, 2},  {31, 2},  {35, 3},  {43, 3},  {51, 3}, {59, 3},
     {67, 4}, {83, 4}, {99, 4}, {115, 4}, {131, 5}, {163, 5}, {195, 5}, {227, 5}, {258, 0}}};
constexpr std::array<Range, 30> DISTANCES{
    {{1, 0},     {2, 0},     {3, 0},     {4, 0},      {5, 1},      {7, 1},
     {9, 2},     {13, 2},    {17, 3},    {25, 3},     {33, 4},     {49, 4},
     {65, 5},    {97, 5},    {129, 6},   {193, 6},    {257, 7},    {385, 7},
     {513, 8},   {769, 8},   {1025, 9},  {1537, 9},   {2049, 10},  {3073, 10},
     {4097, 11}, {6145, 11}, {8193, 12}, {12289, 12}, {16385, 13}, {24577, 13}}};
constexpr std::size_t END_OF_BLOCK = 256;
constexpr std::size_t FIRST_LENGTH = 257;

std::size_t entryOf(std::span<const Range> table, unsigned value) {
    std::size_t entry = table.size() - 1;
    while (table[entry].base > value) {
        --entry;
    }
    return entry;
}

class Writer {
public:
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

    std::string finished() {
        if (count_ > 0) {
            bits(0, 8 - count_);
        }
        return out_;
    }

private:
    std::string out_;
    std::uint64_t held_ = 0;
    unsigned count_ = 0;
};

/// One block with codes of its own.
void writeBlock(Writer& writer, std::span<const Token> tokens, bool isLast) {
    std::vector<std::size_t> literalCounts(286, 0);
    std::vector<std::size_t> distanceCounts(30, 0);
    for (const Token token : tokens) {
        if (token.distance == 0) {
            ++literalCounts[token.length];
        } else {
            ++literalCounts[FIRST_LENGTH + entryOf(LENGTHS, token.length)];
            ++distanceCounts[entryOf(DISTANCES, token.distance)];
        }
    }
    ++literalCounts[END_OF_BLOCK];
    // A block without copies still has to name one distance.
    distanceCounts[0] += static_cast<std::size_t>(
        std::all_of(distanceCounts.begin(), distanceCounts.end(), [](auto n) { return n == 0; }));
    const Lengths literalLengths = codeLengths(literalCounts, 15);
    const Lengths distanceLengths = codeLengths(distanceCounts, 15);

    // The lengths themselves are coded: 16 repeats the last one, 17 and 18 are runs of zeros.
    struct Run {
        unsigned symbol;
        unsigned extra;
        unsigned extraBits;
    };
    Lengths all = literalLengths;
    all.insert(all.end(), distanceLengths.begin(), distanceLengths.end());
    std::vector<Run> runs;
    std::vector<std::size_t> runCounts(19, 0);
    for (std::size_t at = 0; at < all.size();) {
        std::size_t same = 1;
        while (at + same < all.size() && all[at + same] == all[at]) {
            ++same;
        }
        Run run{all[at], 0, 0};
        std::size_t taken = 1;
        if (all[at] == 0 && same >= 11) {
            taken = std::min<std::size_t>(same, 138);
            run = {18, static_cast<unsigned>(taken) - 11, 7};
        } else if (all[at] == 0 && same >= 3) {
            taken = std::min<std::size_t>(same, 10);
            run = {17, static_cast<unsigned>(taken) - 3, 3};
        } else if (at > 0 && all[at] == all[at - 1] && same >= 3) {
            taken = std::min<std::size_t>(same, 6);
            run = {16, static_cast<unsigned>(taken) - 3, 2};
        }
        runs.push_back(run);
        ++runCounts[run.symbol];
        at += taken;
    }
    const Lengths runLengths = codeLengths(runCounts, 7);
    const std::vector<unsigned> runCodes = codesOf(runLengths);
    constexpr std::array<std::size_t, 19> order{16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                11, 4,  12, 3, 13, 2, 14, 1, 15};

    writer.bits(isLast ? 1 : 0, 1);
    writer.bits(2, 2); // own codes
    writer.bits(286 - 257, 5);
    writer.bits(30 - 1, 5);
    writer.bits(19 - 4, 4);
    for (const std::size_t symbol : order) {
        writer.bits(runLengths[symbol], 3);
    }
    for (const Run& run : runs) {
        writer.code(runCodes[run.symbol], runLengths[run.symbol]);
        writer.bits(run.extra, run.extraBits);
    }

    const std::vector<unsigned> literalCodes = codesOf(literalLengths);
    const std::vector<unsigned> distanceCodes = codesOf(distanceLengths);
    const auto literal = [&](std::size_t symbol) {
        writer.code(literalCodes[symbol], literalLengths[symbol]);
    };
    for (const Token token : tokens) {
        if (token.distance == 0) {
            literal(token.length);
            continue;
        }
        const std::size_t length = entryOf(LENGTHS, token.length);
        literal(FIRST_LENGTH + length);
        writer.bits(token.length - LENGTHS.at(length).base, LENGTHS.at(length).extraBits);
        const std::size_t distance = entryOf(DISTANCES, token.distance);
        writer.code(distanceCodes[distance], distanceLengths[distance]);
        writer.bits(token.distance - DISTANCES.at(distance).base, DISTANCES.at(distance).extraBits);
    }
    literal(END_OF_BLOCK);
}

} // namespace

std::string deflated(const std::vector<std::uint8_t>& data) {
    constexpr std::size_t blockLength = 16384;
    const std::vector<Token> tokens = Matcher(data).run();
    Writer writer;
    std::span<const Token> rest(tokens);
    do {
        const std::span<const Token> block = rest.first(std::min(blockLength, rest.size()));
        rest = rest.subspan(block.size());
        writeBlock(writer, block, rest.empty());
    } while (!rest.empty());
    return writer.finished();
}

} // namespace zvonivec::skin
