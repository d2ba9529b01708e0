#include "engine/tags/ape_tag.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace zvonivec {

namespace {

/// Bytes of a text that are read.
constexpr std::size_t TEXT_BYTES = std::size_t{16} * 1024;
/// Items that are looked at. Real tags have some dozens.
constexpr int MOST_ITEMS = 10'000;
/// The longest name of an item, and the NUL after it.
constexpr std::size_t LONGEST_KEY = 256;

constexpr std::array<std::string_view, 6> READ_KEYS = {"ARTIST",  "TITLE", "ALBUM",
                                                       "COMMENT", "GENRE", "YEAR"};

std::uint32_t littleEndian32(std::span<const std::uint8_t> bytes) {
    return std::uint32_t{bytes[0]} | std::uint32_t{bytes[1]} << 8U |
           std::uint32_t{bytes[2]} << 16U | std::uint32_t{bytes[3]} << 24U;
}

std::string textOf(std::span<const std::uint8_t> bytes) {
    return {bytes.begin(), bytes.end()};
}

std::string upperCase(std::string text) {
    std::ranges::transform(text, text.begin(), [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 0x20) : letter;
    });
    return text;
}

} // namespace

std::vector<ApeText> readApeTag(const std::shared_ptr<const FileReader>& file,
                                const TagPlace& place) {
    ReadBuffer buffer(file, std::size_t{4} * 1024);
    const std::uint64_t end = place.begin + place.size;
    std::uint64_t at = place.begin;
    if (const auto header = buffer.bytes(at, 8); textOf(header) == "APETAGEX") {
        at += 32;
    }
    std::vector<ApeText> texts;
    for (int i = 0; i < MOST_ITEMS && at + 8 < end; ++i) {
        const auto head = buffer.bytes(at, 8);
        if (head.size() < 8) {
            break;
        }
        const std::uint32_t size = littleEndian32(head);
        const bool isText = (littleEndian32(head.subspan(4)) & 6U) == 0;
        const auto name = buffer.bytes(at + 8, LONGEST_KEY);
        const auto nul = std::ranges::find(name, 0);
        if (nul == name.end()) {
            break;
        }
        std::string key =
            upperCase(textOf(name.first(static_cast<std::size_t>(nul - name.begin()))));
        at += 8 + key.size() + 1;
        if (at > end || size > end - at) {
            break;
        }
        if (isText && std::ranges::find(READ_KEYS, key) != READ_KEYS.end()) {
            texts.push_back({std::move(key),
                             textOf(buffer.bytes(at, std::min<std::size_t>(size, TEXT_BYTES)))});
        }
        at += size;
    }
    return texts;
}

} // namespace zvonivec
