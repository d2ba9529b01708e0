#include "tools/sha256.h"

#include <bit>
#include <cmath>

namespace tools {

namespace {

/// The first 32 bits of the fractional parts of the cube roots of the first 64 primes.
std::array<std::uint32_t, 64> makeConstants() {
    std::array<std::uint32_t, 64> constants{};
    std::size_t count = 0;
    for (int number = 2; count < constants.size(); ++number) {
        bool prime = true;
        for (int divisor = 2; divisor * divisor <= number; ++divisor) {
            prime = prime && number % divisor != 0;
        }
        if (prime) {
            const long double root = std::cbrt(static_cast<long double>(number));
            constants[count] =
                static_cast<std::uint32_t>((root - std::floor(root)) * 4294967296.0L);
            ++count;
        }
    }
    return constants;
}

} // namespace

void Sha256::add(std::span<const std::uint8_t> bytes) {
    length_ += bytes.size();
    for (const std::uint8_t byte : bytes) {
        block_[filled_] = byte;
        ++filled_;
        if (filled_ == block_.size()) {
            mix();
        }
    }
}

std::string Sha256::hex() {
    const std::uint64_t bits = length_ * 8;
    const std::array<std::uint8_t, 1> one = {0x80};
    const std::array<std::uint8_t, 1> zero = {0};
    add(one);
    while (filled_ != 56) {
        add(zero);
    }
    for (unsigned i = 0; i < 8; ++i) {
        const std::array<std::uint8_t, 1> byte = {static_cast<std::uint8_t>(bits >> (56 - 8 * i))};
        add(byte);
    }
    std::string text;
    for (const std::uint32_t word : state_) {
        for (unsigned i = 0; i < 8; ++i) {
            text += "0123456789abcdef"[word >> (28 - 4 * i) & 15U];
        }
    }
    return text;
}

void Sha256::mix() {
    static const std::array<std::uint32_t, 64> constants = makeConstants();
    std::array<std::uint32_t, 64> words{};
    for (std::size_t i = 0; i < 16; ++i) {
        words[i] = std::uint32_t{block_[4 * i]} << 24U | std::uint32_t{block_[4 * i + 1]} << 16U |
                   std::uint32_t{block_[4 * i + 2]} << 8U | std::uint32_t{block_[4 * i + 3]};
    }
    for (std::size_t i = 16; i < 64; ++i) {
        const std::uint32_t a = words[i - 15];
        const std::uint32_t b = words[i - 2];
        words[i] = words[i - 16] + (std::rotr(a, 7) ^ std::rotr(a, 18) ^ a >> 3U) + words[i - 7] +
                   (std::rotr(b, 17) ^ std::rotr(b, 19) ^ b >> 10U);
    }
    std::array<std::uint32_t, 8> s = state_;
    for (std::size_t i = 0; i < 64; ++i) {
        const std::uint32_t high = std::rotr(s[4], 6) ^ std::rotr(s[4], 11) ^ std::rotr(s[4], 25);
        const std::uint32_t choice = (s[4] & s[5]) ^ (~s[4] & s[6]);
        const std::uint32_t first = s[7] + high + choice + constants[i] + words[i];
        const std::uint32_t low = std::rotr(s[0], 2) ^ std::rotr(s[0], 13) ^ std::rotr(s[0], 22);
        const std::uint32_t majority = (s[0] & s[1]) ^ (s[0] & s[2]) ^ (s[1] & s[2]);
        s = {first + low + majority, s[0], s[1], s[2], s[3] + first, s[4], s[5], s[6]};
    }
    for (std::size_t i = 0; i < 8; ++i) {
        state_[i] += s[i];
    }
    filled_ = 0;
}

} // namespace tools
