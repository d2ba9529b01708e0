// A track's texts, from the tags of its file.
#pragma once

#include "engine/file_reader.h"

#include <memory>
#include <string>

namespace zvonivec {

/// UTF-8, one line each, at most textLimit characters; empty when the file doesn't say.
struct TrackTags {
    std::string author;
    std::string title;
    std::string album;
    std::string description;
    std::string genre;
    std::string year;
};

/// Reads the tags of an MP3 file: for each text the best source that has it, which is ID3v2, then
/// APE, then ID3v1. Takes as long as reading the tags takes.
TrackTags readTags(const std::shared_ptr<const FileReader>& file);

} // namespace zvonivec
