// Reads a track's texts from the tags of its file.
#pragma once

#include "engine/reading/file_reader.h"

#include <memory>
#include <string>

namespace zvonivec {

/// Texts in UTF-8, one line each, at most TAG_TEXT_LIMIT characters; empty when the file has none.
struct TrackTags {
    std::string author = {};
    std::string title = {};
    std::string album = {};
    std::string description = {};
    std::string genre = {};
    std::string year = {};
};

/// Reads the tags of an MP3 file. Each text comes from the best tag that has it: ID3v2, then APE,
/// then ID3v1.
TrackTags readTags(const std::shared_ptr<const FileReader>& file);

} // namespace zvonivec
