// Landlock: a process takes from itself the right to change files.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zvonivec::file_rights {

/// What stays allowed beneath a folder, or on a file.
enum class Right : std::uint8_t {
    write,          ///< write to files that are there
    writeAndRename, ///< and make, rename and remove files
    makeSockets,    ///< only make and remove sockets, and remove files
};

struct Place {
    std::string path;
    Right right;
};

/// Leaves the process the right to change files in these places alone, and to execute none.
/// Reading stays allowed everywhere. Places that aren't there are passed over. Returns False when
/// the kernel has no Landlock or doesn't accept the rules: then everything stays allowed.
bool giveUpAllBut(const std::vector<Place>& places);

} // namespace zvonivec::file_rights
