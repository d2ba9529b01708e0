// The content of a folder, read beside the user-interface thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zvonivec {

/// Lists what a path leads to, from the names and the status of files alone: nothing in the folder
/// is opened. A disk that hangs holds up nobody. Where no thread can be had, the constructor does
/// the work.
///
/// Created, used and destroyed on the user-interface thread. Destroying it ends the listing: no
/// event comes any more.
class FolderListing {
public:
    /// A file or a folder, or a link to one. Pipes, devices, sockets, links to nothing and names
    /// that begin with a dot aren't listed.
    struct Entry {
        std::string name; ///< the system's own name, in any bytes
        bool isFolder = false;
        std::uint64_t size = 0;    ///< bytes of a file
        std::int64_t modified = 0; ///< seconds since 1970
    };
    enum class End {
        folder,    ///< all entries have come
        file,      ///< the path leads to something that isn't a folder
        nothing,   ///< the path leads to nothing
        unreadable ///< a folder that can't be listed, or not to its end
    };
    /// The events, in order: any number of entries, then the end.
    struct Events {
        std::function<void(std::vector<Entry> entries)> entries;
        std::function<void(End end)> ended;
    };
    /// Runs a function on the user-interface thread later. Called on any thread.
    using Post = std::function<void(std::function<void()>)>;

    FolderListing(const std::string& path, Events events, Post post);
    FolderListing(const FolderListing&) = delete;
    FolderListing& operator=(const FolderListing&) = delete;
    ~FolderListing();

private:
    struct Shared;
    std::shared_ptr<Shared> shared_;
};

} // namespace zvonivec
