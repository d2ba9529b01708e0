// Times as the display shows them.
#pragma once

#include <string>

namespace zvonivec {

/// mm:ss; seconds are cut, not rounded, minutes of 100 and more have as many digits as they need.
/// Below 0, or no number: "00:00".
std::string timeText(double seconds);

} // namespace zvonivec
