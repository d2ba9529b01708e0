// Formats times for the display.
#pragma once

#include <string>

namespace zvonivec {

/// Returns a time as mm:ss. Seconds are cut, not rounded; minutes from 100 on have more digits.
/// A negative time or no number gives "00:00".
std::string timeText(double seconds);

} // namespace zvonivec
