// GIF files of one picture.
#pragma once

#include "skin/drawing/image.h"

#include <optional>
#include <string>

namespace zvonivec::skin {

/// Returns the bytes of a GIF (version 89a) that shows the picture. Alpha must be 0 or 255. A
/// picture with clear pixels has one transparent palette entry. Returns nothing when the picture
/// needs more than 256 palette entries.
std::optional<std::string> gifBytes(const Picture& picture);

} // namespace zvonivec::skin
