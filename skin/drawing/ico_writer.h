// Windows' icon files: one icon in several sizes.
#pragma once

#include "skin/drawing/image.h"

#include <string>
#include <vector>

namespace zvonivec::skin {

/// The bytes of an icon file that holds each picture as a PNG. The pictures are square and have at
/// most 256 pixels a side.
std::string icoBytes(const std::vector<Picture>& pictures);

} // namespace zvonivec::skin
