// PNG files.
#pragma once

#include "skin/drawing/image.h"

#include <optional>
#include <string>

namespace zvonivec::skin {

/// Returns the bytes of a PNG: with a palette where up to 256 colours do, else with 8 bits for each
/// of red, green, blue and alpha. Returns nothing when the picture can't be encoded.
std::optional<std::string> pngBytes(const Picture& picture);

} // namespace zvonivec::skin
