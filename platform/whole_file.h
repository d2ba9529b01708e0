// Files that are read and replaced as a whole.
//
// Writing may be interrupted by a full disk, the end of the process or a power cut. The file then
// has all of the old content or all of the new content.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace zvonivec::whole_file {

/// The largest size in bytes. A larger file can't be a settings file: it is neither read nor
/// written.
inline constexpr std::size_t LARGEST = std::size_t{2} << 20U;

enum class Found { file, nothing, unusable };

struct Content {
    Found found = Found::nothing;
    std::string bytes; ///< content of a file, else empty
};

/// Reads a file and waits for nothing but the disk. Anything that isn't an ordinary file, such as a
/// folder or a pipe, is unusable. So is a file that can't be read or is too large.
[[nodiscard]] Content read(const std::string& path);

/// Replaces a file's content by what the function returns for it. The function gets an empty text
/// when there is no file. Returns false on failure and leaves the file as it was.
///
/// The new content goes to "<path>.new" first. This file is locked, so that each of several
/// processes builds on what the previous one has written. A process waits for the others for one
/// second at most. On a file system without locks nothing is written.
///
/// Permissions, owner and group stay as far as the process may set them. A symbolic link stays, and
/// its target is replaced. A file that the process may not write stays as it is, even if it could
/// be replaced.
bool update(const std::string& path, const std::function<std::string(const std::string&)>& change);

} // namespace zvonivec::whole_file
