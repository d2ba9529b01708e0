// PNG files, compressed here so that their bytes don't depend on a library's version.
#pragma once

#include "skin/drawing/image.h"

#include <string>

namespace zvonivec::skin {

/// The bytes of a PNG: with a palette where up to 256 colours do, else with 8 bits for each of red,
/// green, blue and alpha.
std::string pngBytes(const Picture& picture);

} // namespace zvonivec::skin
