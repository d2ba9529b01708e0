// GIF files of one picture.
#pragma once

#include "skin/drawing/image.h"

#include <optional>
#include <string>

namespace zvonivec::skin {

/// The bytes of a GIF (version 89a) that shows the picture. Alpha must be 0 or 255; where any pixel
/// is clear, one palette entry is the transparent one. Nothing when the picture needs more than
/// 256 palette entries.
std::optional<std::string> gifBytes(const Picture& picture);

} // namespace zvonivec::skin
