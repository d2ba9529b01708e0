#include "engine/tags/unicode.h"

#include <algorithm>
#include <array>

namespace zvonivec {

void append(std::string& text, char32_t character) {
    const auto put = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0U | character >> 6U);
        put(0x80U | (character & 0x3FU));
    } else if (character < 0x10000) {
        put(0xE0U | character >> 12U);
        put(0x80U | (character >> 6U & 0x3FU));
        put(0x80U | (character & 0x3FU));
    } else {
        put(0xF0U | character >> 18U);
        put(0x80U | (character >> 12U & 0x3FU));
        put(0x80U | (character >> 6U & 0x3FU));
        put(0x80U | (character & 0x3FU));
    }
}

std::optional<char32_t> takeCharacter(std::string_view& utf8) {
    const auto byteAt = [&](std::size_t i) {
        return i < utf8.size() ? static_cast<unsigned char>(utf8[i]) : 0U;
    };
    const unsigned first = byteAt(0);
    const std::size_t length = first < 0x80    ? 1
                               : first < 0xC2  ? 0
                               : first < 0xE0  ? 2
                               : first < 0xF0  ? 3
                               : first <= 0xF4 ? 4
                                               : 0;
    char32_t character = length <= 1 ? first : first & (0x7FU >> length);
    bool valid = length != 0 && length <= utf8.size();
    for (std::size_t i = 1; valid && i < length; ++i) {
        valid = (byteAt(i) & 0xC0U) == 0x80;
        character = character << 6U | (byteAt(i) & 0x3FU);
    }
    constexpr std::array<char32_t, 5> shortest = {0, 0, 0x80, 0x800, 0x10000};
    valid = valid && character >= shortest[length] && character <= 0x10FFFF &&
            (character < 0xD800 || character > 0xDFFF);
    utf8.remove_prefix(valid ? length : 1);
    return valid ? std::optional(character) : std::nullopt;
}

std::size_t incompleteTail(std::string_view utf8) {
    for (std::size_t size = 1; size <= std::min<std::size_t>(3, utf8.size()); ++size) {
        const auto byte = static_cast<unsigned char>(utf8[utf8.size() - size]);
        if (byte >= 0xC2 && byte <= 0xF4) {
            const std::size_t whole = byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
            return size < whole ? size : 0;
        }
        if ((byte & 0xC0U) != 0x80) {
            return 0;
        }
    }
    return 0;
}

std::string fromUtf16(std::string_view bytes, bool bigEndian) {
    std::string text;
    const auto unitAt = [&](std::size_t at) {
        const auto first = static_cast<unsigned char>(bytes[at]);
        const auto second = static_cast<unsigned char>(bytes[at + 1]);
        return static_cast<char32_t>(bigEndian ? first << 8 | second : second << 8 | first);
    };
    for (std::size_t at = 0; at + 2 <= bytes.size(); at += 2) {
        char32_t character = unitAt(at);
        if (character >= 0xD800 && character < 0xE000) {
            const char32_t low = at + 4 <= bytes.size() ? unitAt(at + 2) : 0;
            const bool pair = character < 0xDC00 && low >= 0xDC00 && low < 0xE000;
            character =
                pair ? 0x10000 + ((character - 0xD800) << 10U) + (low - 0xDC00) : REPLACEMENT;
            at += pair ? 2 : 0;
        }
        append(text, character);
    }
    return text;
}

} // namespace zvonivec
