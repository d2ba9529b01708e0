// Names of genres, and the ways in which tags write them. Pure functions.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zvonivec {

/// Returns the name of a genre by its number in ID3v1; empty for numbers without a name.
std::string_view genreName(int number);

/// Adds the genres of a text to names, each once: a number or an abbreviation of ID3v2, or these in
/// brackets and a text that refines them, as in "(4)Eurodisco". A bracket of the text itself is
/// written twice there; other brackets belong to a name. The text is tidy.
void addGenres(std::vector<std::string>& names, std::string_view text);

} // namespace zvonivec
