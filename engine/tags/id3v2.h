// Reads the texts of an ID3v2 tag.
#pragma once

#include "engine/reading/file_reader.h"
#include "engine/reading/tag_places.h"

#include <memory>
#include <string>
#include <vector>

namespace zvonivec {

/// A frame that holds text, as it stands in the file.
struct Id3v2Text {
    std::string id;    ///< four letters, also of a tag of version 2.2
    char encoding = 0; ///< 0: claims to be Latin-1, 1: UTF-16, 2: UTF-16BE, 3: UTF-8
    std::string bytes; ///< the text; of a comment description, NUL and text
};

/// Reads the frames of a tag that a track's texts come from. Frames of other kinds, and frames that
/// are empty, broken or encrypted, are skipped without being read. Reads at most some kilobytes of
/// each text, whatever sizes the tag states.
std::vector<Id3v2Text> readId3v2(const std::shared_ptr<const FileReader>& file,
                                 const TagPlace& place);

} // namespace zvonivec
