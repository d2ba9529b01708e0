// Reads and writes characters of UTF-8. Pure functions.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zvonivec {

/// Stands for bytes that are no character.
inline constexpr char32_t REPLACEMENT = 0xFFFD;

/// Appends a character as UTF-8.
void append(std::string& text, char32_t character);

/// Removes the first character of UTF-8 text and returns it. Removes one byte, and returns nothing,
/// when the text doesn't begin with a valid character.
std::optional<char32_t> takeCharacter(std::string_view& utf8);

/// Bytes of a character that UTF-8 text ends within; 0 when it ends with a whole character.
std::size_t incompleteTail(std::string_view utf8);

/// Returns text from UTF-16. Unpaired surrogates become U+FFFD; an odd byte at the end is dropped.
std::string fromUtf16(std::string_view bytes, bool bigEndian);

} // namespace zvonivec
