// Files that are replaced as a whole.
//
// Writing may be interrupted by a full disk, the end of the process or a power cut. The file then
// has all of the old content or all of the new content.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace zvonivec::whole_file {

/// Most bytes of a file that are read. What follows them is only copied.
inline constexpr std::size_t MOST_READ = std::size_t{2} << 20U;

enum class Found { file, nothing, unusable };

struct Content {
    Found found = Found::nothing;
    std::string bytes;  ///< the beginning of a file, else empty
    bool isCut = false; ///< the file has more bytes than these
};

/// Reads a file and waits for nothing but the disk. Anything that isn't an ordinary file, such as a
/// folder or a pipe, is unusable. So is a file that can't be read.
[[nodiscard]] Content read(const std::string& path);

/// Returns new bytes for those of a file, or nothing to leave the file as it is.
using Change = std::function<std::optional<std::string>(const Content&)>;

/// Replaces the bytes of a file that are read by what the function returns for them. The function
/// gets no bytes when there is no file. The bytes that aren't read follow as they are, holes
/// included. Returns false when the file was left as it was, by the function or after a failure.
///
/// The new content goes to "<path>.new" first. This file is locked, so that each of several
/// processes builds on what the previous one has written. A process waits for the others for one
/// second at most. On a file system without locks nothing is written.
///
/// Permissions, owner and group stay as far as the process may set them. A symbolic link stays, and
/// its target is replaced. A file that the process may not write stays as it is, even if it could
/// be replaced.
bool update(const std::string& path, const Change& change);

} // namespace zvonivec::whole_file
