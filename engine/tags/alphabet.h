// Finds out which alphabet the bytes of a tag are in, and decodes them. Pure functions.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace zvonivec {

/// The 8-bit alphabets of tags that claim to be Latin-1.
enum class Alphabet {
    windows1250, ///< Czech, Slovak, Polish, Hungarian
    iso88592,    ///< the same languages, of older Unix programs
    windows1252, ///< Latin-1 with Windows' additions: Spanish, French, German, Scandinavian
};

/// Decides by all texts of a tag together. Each language has habits: letters that it uses, and
/// letters that stand before and after them. The alphabet whose letters fit a language best wins; a
/// tie goes to Windows-1250.
Alphabet alphabetOf(std::span<const std::string_view> texts);

/// Returns text as UTF-8. Bytes that an alphabet doesn't use become U+FFFD.
std::string decode(std::string_view bytes, Alphabet alphabet);

} // namespace zvonivec
