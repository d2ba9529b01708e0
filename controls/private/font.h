// The typeface of the program's own windows.
#pragma once

#include <QFont>

namespace zvonivec {

/// Returns "MS Sans Serif" of 8.25 points at 96 dots per inch, or a substitute that is 11 pixels
/// high. The desktop's font settings don't change it.
[[nodiscard]] QFont formFont(bool bold);

} // namespace zvonivec
