// Recognises what a file is by its content, never by its name.
#pragma once

#include "engine/reading/file_reader.h"
#include "engine/reading/frame_header.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace zvonivec {

/// Where the MPEG audio layer III frames of a file lie.
struct Mp3Stream {
    std::uint64_t begin = 0;        ///< offset of the first frame
    std::uint64_t end = 0;          ///< offset of the tags at the end, or the size of the file
    FrameHeader first;              ///< header of the first frame
    std::size_t freeFormatSize = 0; ///< bytes of a free-format frame without padding, else 0
};

struct FileKind {
    /// The usual extension of such files, in lower case: "mp3" for MPEG audio layer III; empty when
    /// the content is none of the known kinds.
    std::string extension;
    std::optional<Mp3Stream> stream; ///< set exactly when the extension is "mp3"
};

/// Recognises a file's kind from at most some megabytes of it, whatever its size. Layer III
/// is recognised by a run of consistent frames, which may follow tags and up to 3 MiB of other
/// bytes; the further away it begins, the longer it must be. Null, an unreadable file and an empty
/// file are no known kind.
FileKind detectFileKind(const std::shared_ptr<const FileReader>& file);

} // namespace zvonivec
