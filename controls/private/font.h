// The one typeface of the program's own windows.
#pragma once

#include <QFont>

namespace zvonivec {

/// "MS Sans Serif" of 8.25 points at 96 dots per inch, or what stands for it: 11 pixels high and
/// drawn the same whatever the desktop's font settings are.
[[nodiscard]] QFont formFont(bool bold);

} // namespace zvonivec
