// Finds the tags at both ends of a file. Never searches: every tag states its size, and the next
// tag begins or ends where that size says.
#pragma once

#include "engine/reading/file_reader.h"

#include <cstdint>
#include <span>
#include <vector>

namespace zvonivec {

struct TagPlace {
    enum class Kind { id3v2, ape, id3v1, lyrics3 };
    Kind kind = Kind::id3v1;
    std::uint64_t begin = 0; ///< offset of its header, or of its first item when it has none
    std::uint64_t size = 0;  ///< whole size in bytes, cut at the end of the file
};

struct TagPlaces {
    std::vector<TagPlace> tags; ///< leading tags in order, then trailing tags from the end
    std::uint64_t begin = 0;    ///< offset after the leading tags
    std::uint64_t end = 0;      ///< offset of the trailing tags, or the size of the file
};

/// Returns the whole length of the ID3v2 or APE tag that begins with these bytes, or 0 when none
/// does. Needs at most 32 bytes.
std::uint64_t leadingTagSize(std::span<const std::uint8_t> bytes);

/// Finds the tags of a file: ID3v2 and APE at the start; ID3v1, Lyrics3v2, APE and ID3v2 with a
/// footer at the end, each in any order.
TagPlaces findTags(const FileReader& file);

} // namespace zvonivec
