// The path of the settings file.
#pragma once

#include <string>

namespace zvonivec {

/// Returns the path of "MP3.ini" in the program's folder. The folder may end in a separator, as the
/// root of a drive does.
[[nodiscard]] std::string SettingsPath(const std::string& programFolder,
                                       const std::string& separator);

} // namespace zvonivec
