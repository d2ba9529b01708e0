// The toolkit's display back-ends and where they differ.
#pragma once

#include <string>

namespace zvonivec {

/// Returns names of back-ends for Application, the preferred one first. The window's shape, its
/// place and its place above other windows need an X server. So the program uses XWayland in a
/// Wayland session that has it.
[[nodiscard]] std::string displayBackEnds();

/// Whether the toolkit takes the hot spot of a pointer's picture in device pixels, as it does under
/// X11, instead of logical ones.
[[nodiscard]] bool hotSpotIsInDevicePixels();

} // namespace zvonivec
