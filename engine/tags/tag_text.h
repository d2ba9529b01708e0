// Turns bytes of a tag, in an uncertain encoding, into one tidy line of text. Pure functions.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zvonivec {

/// Longest text of a tag, in characters. A longer text would only burden the window.
inline constexpr std::size_t TAG_TEXT_LIMIT = 1000;

/// Returns text, as UTF-8, from bytes that claim to be Latin-1. Few are. Valid UTF-8 with a
/// character of several bytes counts as UTF-8, everything else as Windows-1250, the encoding of
/// old Czech files. The text ends at the first NUL.
std::string textFromLatin1Claim(std::string_view bytes);

/// Returns one line without control characters. Line breaks and tabs become a blank; other control
/// characters, blanks at both ends and invalid UTF-8 are removed. At most TAG_TEXT_LIMIT
/// characters.
std::string tidyText(std::string_view utf8);

} // namespace zvonivec
