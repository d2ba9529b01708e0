// What a file is, by its content and never by its name.
#pragma once

#include "engine/file_reader.h"
#include "engine/frame_header.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace zvonivec {

/// Where the MPEG audio layer III frames of a file lie.
struct Mp3Stream {
    std::uint64_t begin = 0; ///< offset of the first frame
    std::uint64_t end = 0;   ///< offset behind the last byte that can be audio: tags lie beyond
    FrameHeader first;       ///< header of the first frame; the others agree with it
    std::size_t freeFormatSize = 0; ///< bytes of an unpadded frame in free format, else 0
};

struct FileKind {
    /// The usual extension of such files, in lower case: "mp3" for MPEG audio layer III; empty when
    /// the content is none of the known kinds.
    std::string extension;
    std::optional<Mp3Stream> stream; ///< there exactly when the extension is "mp3"
};

/// The whole length of the ID3v2 or APE tag that begins with these bytes, 0 when none does. Looks
/// at no more than 32 bytes.
std::uint64_t leadingTagSize(std::span<const std::uint8_t> bytes);

/// Tells a file's kind from at most some hundred kilobytes of it, however large it is. Layer III is
/// told by a run of frames that agree, which may begin behind tags and up to 64 KiB of other bytes.
/// Null, a file that can't be read, and an empty file are no known kind.
FileKind detectFileKind(const std::shared_ptr<const FileReader>& file);

} // namespace zvonivec
