// Names of files, which may be any bytes.
#pragma once

#include <string>

namespace zvonivec {

/// Returns a path to show to the user, in UTF-8. Old collections have names in Windows-1250. So
/// each part between separators that isn't valid UTF-8 is read as Windows-1250.
[[nodiscard]] std::string shownPath(const std::string& path);

} // namespace zvonivec
