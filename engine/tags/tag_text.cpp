#include "engine/tags/tag_text.h"

#include <array>
#include <cstdint>
#include <optional>

namespace zvonivec {

namespace {

constexpr char32_t REPLACEMENT = 0xFFFD;

/// Characters of Windows-1250 from 0x80 on; five codes are unused.
constexpr std::array<std::uint16_t, 128> WINDOWS1250 = {
    0x20AC, 0xFFFD, 0x201A, 0xFFFD, 0x201E, 0x2026, 0x2020, 0x2021, 0xFFFD, 0x2030, 0x0160, 0x2039,
    0x015A, 0x0164, 0x017D, 0x0179, 0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0xFFFD, 0x2122, 0x0161, 0x203A, 0x015B, 0x0165, 0x017E, 0x017A, 0x00A0, 0x02C7, 0x02D8, 0x0141,
    0x00A4, 0x0104, 0x00A6, 0x00A7, 0x00A8, 0x00A9, 0x015E, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x017B,
    0x00B0, 0x00B1, 0x02DB, 0x0142, 0x00B4, 0x00B5, 0x00B6, 0x00B7, 0x00B8, 0x0105, 0x015F, 0x00BB,
    0x013D, 0x02DD, 0x013E, 0x017C, 0x0154, 0x00C1, 0x00C2, 0x0102, 0x00C4, 0x0139, 0x0106, 0x00C7,
    0x010C, 0x00C9, 0x0118, 0x00CB, 0x011A, 0x00CD, 0x00CE, 0x010E, 0x0110, 0x0143, 0x0147, 0x00D3,
    0x00D4, 0x0150, 0x00D6, 0x00D7, 0x0158, 0x016E, 0x00DA, 0x0170, 0x00DC, 0x00DD, 0x0162, 0x00DF,
    0x0155, 0x00E1, 0x00E2, 0x0103, 0x00E4, 0x013A, 0x0107, 0x00E7, 0x010D, 0x00E9, 0x0119, 0x00EB,
    0x011B, 0x00ED, 0x00EE, 0x010F, 0x0111, 0x0144, 0x0148, 0x00F3, 0x00F4, 0x0151, 0x00F6, 0x00F7,
    0x0159, 0x016F, 0x00FA, 0x0171, 0x00FC, 0x00FD, 0x0163, 0x02D9,
};

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

/// Removes the first character of UTF-8 text and returns it. Removes one byte, and returns nothing,
/// when the text doesn't begin with a valid character.
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

bool isUtf8WithLongCharacter(std::string_view bytes) {
    bool longOne = false;
    while (!bytes.empty()) {
        const auto character = takeCharacter(bytes);
        if (!character) {
            return false;
        }
        longOne = longOne || *character >= 0x80;
    }
    return longOne;
}

bool isControl(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

/// Whether a control character separates words: tabs, line and page ends.
bool isBreak(char32_t character) {
    return (character >= 0x09 && character <= 0x0D) || character == 0x85 || character == 0x2028 ||
           character == 0x2029;
}

} // namespace

std::string textFromLatin1Claim(std::string_view bytes) {
    bytes = bytes.substr(0, bytes.find('\0'));
    if (isUtf8WithLongCharacter(bytes)) {
        return std::string(bytes);
    }
    std::string text;
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        append(text, code < 0x80 ? code : WINDOWS1250[code - 0x80U]);
    }
    return text;
}

std::string tidyText(std::string_view utf8) {
    std::string text;
    std::size_t blanks = 0; // blanks since the last character, written before the next one
    for (std::size_t count = 0; !utf8.empty() && count < TAG_TEXT_LIMIT;) {
        const char32_t character = takeCharacter(utf8).value_or(REPLACEMENT);
        const bool parts = isBreak(character);
        if (parts || character == U' ') {
            blanks += parts && blanks != 0 ? 0 : 1;
        } else if (!isControl(character) && character != REPLACEMENT) {
            if (!text.empty()) {
                if (blanks >= TAG_TEXT_LIMIT - count) {
                    break;
                }
                text.append(blanks, ' ');
                count += blanks;
            }
            blanks = 0;
            append(text, character);
            ++count;
        }
    }
    return text;
}

} // namespace zvonivec
