// Files that are read and replaced as a whole.
//
// Whatever happens while a file is written, a full disk, the end of the process, a power cut: what
// stands under its name afterwards is all of the old content or all of the new one.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace zvonivec::whole_file {

/// A file that is larger is left alone, and none is made larger: it can't be a settings file.
inline constexpr std::size_t LARGEST = std::size_t{2} << 20U;

enum class Found { file, nothing, unusable };

struct Content {
    Found found = Found::nothing;
    std::string bytes; ///< of a file
};

/// Never waits for anything but the disk: what is no ordinary file, such as a folder or a pipe, is
/// unusable, as is one that can't be read or is too large.
[[nodiscard]] Content read(const std::string& path);

/// Replaces a file by what the function makes of its content, which is empty where there is no
/// file. False when that could not be done, and the file is as it was.
///
/// The new content goes to "<path>.new" first, which is locked, so that of several processes that
/// do this at the same time each builds on what the one before has written. The wait for the others
/// is a second at most; where a file system has no locks, nothing is written. Permissions, owner
/// and group stay as they are as far as the process may set them, and a symbolic link stays one:
/// its target is replaced. A file that the process may not write is left alone, also where it could
/// be replaced.
bool update(const std::string& path, const std::function<std::string(const std::string&)>& change);

} // namespace zvonivec::whole_file
