// Which of the toolkit's display back-ends the program runs on.
#pragma once

#include <string>

namespace zvonivec {

/// Names for Application, the wanted one first. The window's shape, its place and its state above
/// others need an X server, so a Wayland session is met through XWayland where there is one.
[[nodiscard]] std::string displayBackEnds();

} // namespace zvonivec
