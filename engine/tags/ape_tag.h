// Reads the texts of an APE tag.
#pragma once

#include "engine/reading/file_reader.h"
#include "engine/reading/tag_places.h"

#include <memory>
#include <string>
#include <vector>

namespace zvonivec {

struct ApeText {
    std::string key;   ///< in upper case
    std::string bytes; ///< UTF-8 in version 2 of the format, Latin-1 before; values end at a NUL
};

/// Reads the items of a tag that a track's texts come from. Other items are skipped without being
/// read. Reads at most some kilobytes of each text, whatever sizes the tag states.
std::vector<ApeText> readApeTag(const std::shared_ptr<const FileReader>& file,
                                const TagPlace& place);

} // namespace zvonivec
