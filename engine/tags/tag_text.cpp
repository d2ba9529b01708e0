#include "engine/tags/tag_text.h"

#include "engine/tags/unicode.h"

#include <utility>

namespace zvonivec {

namespace {

bool isControl(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

/// Whether a control character separates words: tabs, line and page ends.
bool isBreak(char32_t character) {
    return (character >= 0x09 && character <= 0x0D) || character == 0x85 || character == 0x2028 ||
           character == 0x2029;
}

} // namespace

std::optional<std::string> utf8Text(std::string_view bytes) {
    // A writer that cuts a text after a number of bytes may cut within a character. In a few bytes
    // the tail is as likely a letter of another alphabet.
    constexpr std::size_t fewBytes = 8;
    const std::size_t tail = bytes.size() < fewBytes ? 0 : incompleteTail(bytes);
    const std::string_view whole = bytes.substr(0, bytes.size() - tail);
    bool longCharacter = false;
    for (std::string_view rest = whole; !rest.empty();) {
        const auto character = takeCharacter(rest);
        if (!character) {
            return std::nullopt;
        }
        longCharacter = longCharacter || *character >= 0x80;
    }
    return longCharacter ? std::optional(std::string(whole)) : std::nullopt;
}

std::string textFromLatin1Claim(std::string_view bytes, Alphabet alphabet) {
    bytes = bytes.substr(0, bytes.find('\0'));
    auto utf8 = utf8Text(bytes);
    return utf8 ? std::move(*utf8) : decode(bytes, alphabet);
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
