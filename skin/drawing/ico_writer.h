// Icon files of Windows: one icon in several sizes.
#pragma once

#include "skin/drawing/image.h"

#include <optional>
#include <string>
#include <vector>

namespace zvonivec::skin {

/// Returns the bytes of an icon file that holds each picture as a PNG. The pictures are square and
/// have at most 256 pixels a side. Returns nothing when a picture can't be encoded.
std::optional<std::string> icoBytes(const std::vector<Picture>& pictures);

} // namespace zvonivec::skin
