// Turns bytes of a tag, in an uncertain encoding, into one tidy line of text. Pure functions.
#pragma once

#include "engine/tags/alphabet.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zvonivec {

/// Longest text of a tag, in characters. A longer text would only burden the window.
inline constexpr std::size_t TAG_TEXT_LIMIT = 1000;

/// Returns bytes of an unknown alphabet if they are UTF-8 with a character of several bytes, which
/// texts of other alphabets are hardly ever; nothing otherwise. A character that is cut off at the
/// end is dropped.
std::optional<std::string> utf8Text(std::string_view bytes);

/// Returns text, as UTF-8, from bytes that claim to be Latin-1: UTF-8 if they can be, else text of
/// an alphabet. The text ends at the first NUL.
std::string textFromLatin1Claim(std::string_view bytes, Alphabet alphabet = Alphabet::windows1250);

/// Returns one line without control characters. Line breaks and tabs become a blank; other control
/// characters, blanks at both ends and invalid UTF-8 are removed. At most TAG_TEXT_LIMIT
/// characters.
std::string tidyText(std::string_view utf8);

} // namespace zvonivec
