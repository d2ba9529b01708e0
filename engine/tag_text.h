// Text out of tags: from bytes of uncertain encoding to one tidy line. Pure.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zvonivec {

/// Longest text of a tag, in characters: more is no text but an attack on whoever shows it.
inline constexpr std::size_t TAG_TEXT_LIMIT = 1000;

/// Text whose bytes claim to be Latin-1. Hardly any are: they are read as UTF-8 when they are valid
/// UTF-8 with a character of several bytes, else as Windows-1250, in which Czech files were
/// written. Ends at the first NUL. The result is UTF-8.
std::string textFromLatin1Claim(std::string_view bytes);

/// One line without control characters: those that part words become a blank, the others are gone,
/// and so are blanks at both ends and what is no valid UTF-8. Cut at tagTextLimit characters.
std::string tidyText(std::string_view utf8);

} // namespace zvonivec
