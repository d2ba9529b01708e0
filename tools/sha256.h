// SHA-256, so that scripts can compare samples with sha256sum.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace tools {

class Sha256 {
public:
    void add(std::span<const std::uint8_t> bytes);
    /// The digest of everything added, in hexadecimal. Ends the calculation.
    std::string hex();

private:
    void mix();

    std::array<std::uint32_t, 8> state_ = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                           0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
    std::array<std::uint8_t, 64> block_{};
    std::size_t filled_ = 0;
    std::uint64_t length_ = 0;
};

} // namespace tools
