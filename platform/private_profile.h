// The text format of settings files, for systems that have no functions for it.
//
//   [General]
//   Left=4807.5
//
// Everything here works on a file's bytes, without the file. A line ends with CR LF, LF or CR.
// Blanks around lines, names and values don't count, nor does the case of section and key names.
// The first section of a name holds, and in it the first line of a key. One pair of quotes around a
// value, '"' or "'", is not part of it. The bytes may be of any 8-bit encoding, or UTF-16 with a
// byte order mark; a value of UTF-16 has a '?' for each character beyond ASCII.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zvonivec::private_profile {

/// The value of a key; nothing when the section has no line "key=".
[[nodiscard]] std::optional<std::string> value(std::string_view file, std::string_view section,
                                               std::string_view key);

/// The file with a key set to a value: in the key's line if there is one, else in a new line behind
/// the last of its section that isn't empty, else in a new section at the end. All other bytes stay
/// as they are. A new line ends as the file's first line does, with CR LF in a file without lines.
[[nodiscard]] std::string withValue(std::string_view file, std::string_view section,
                                    std::string_view key, std::string_view value);

} // namespace zvonivec::private_profile
