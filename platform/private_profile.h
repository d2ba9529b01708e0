// The text format of settings files, for systems that have no functions for it.
//
//   [General]
//   Left=4807.5
//
// The functions work on the bytes of a file and don't touch the disk. A line ends with CR LF, LF or
// CR. Blanks around lines, names and values are ignored, and so is the case of section and key
// names. Of several sections with the same name the first counts, and in it the first line of a
// key. A pair of quotes around a value, '"' or "'", isn't part of the value. The bytes are in any
// 8-bit encoding, or in UTF-16 with a byte order mark. A value from UTF-16 has a '?' for each
// character beyond ASCII.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zvonivec::private_profile {

/// What the bytes of a file are: all of them, or those up to a place where something cut it. The
/// last line of a beginning isn't read, because its end may be missing.
enum class Extent { wholeFile, beginning };

/// Returns the value of a key, or nothing when the section has no line "key=".
[[nodiscard]] std::optional<std::string> value(std::string_view file, std::string_view section,
                                               std::string_view key,
                                               Extent extent = Extent::wholeFile);

/// Returns the file's bytes with a key set to a value. The value goes into the key's line if there
/// is one. Otherwise a new line goes behind the section's last line that isn't empty, or into a new
/// section at the end. All other bytes stay. A new line ends like the file's first line, or with CR
/// LF in a file without lines.
///
/// In a beginning, whose end may lie within any section, a new line goes behind the line with the
/// section's name, and a new section goes in front of the first section. Lines in front of all
/// sections belong to none.
[[nodiscard]] std::string withValue(std::string_view file, std::string_view section,
                                    std::string_view key, std::string_view value,
                                    Extent extent = Extent::wholeFile);

} // namespace zvonivec::private_profile
