#include "engine/time_text.h"

#include <algorithm>
#include <cmath>

namespace zvonivec {

namespace {

std::string twoDigits(long long number) {
    const std::string digits = std::to_string(number);
    return digits.size() < 2 ? "0" + digits : digits;
}

} // namespace

std::string timeText(double seconds) {
    constexpr double longest = 1e12; // any larger number might not fit the type
    const double shown = std::isnan(seconds) ? 0 : std::clamp(seconds, 0.0, longest);
    const auto whole = static_cast<long long>(shown);
    return twoDigits(whole / 60) + ":" + twoDigits(whole % 60);
}

} // namespace zvonivec
