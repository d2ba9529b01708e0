// Names of files, which may be any bytes, as texts and URLs.
#pragma once

#include <optional>
#include <string>

class QUrl;

namespace zvonivec {

/// Returns a path to show to the user, in UTF-8. Old collections have names in Windows-1250. So
/// each part between separators that isn't valid UTF-8 is read as Windows-1250.
[[nodiscard]] std::string shownPath(const std::string& path);

/// Returns the URL of a file of this machine, in ASCII.
[[nodiscard]] std::string fileUrl(const std::string& path);

/// Returns the path that a URL names, or nothing when it names no file of this machine.
[[nodiscard]] std::optional<std::string> localPath(QUrl url);

} // namespace zvonivec
