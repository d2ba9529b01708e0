#include "playback/rules.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace zvonivec {

namespace {

// Twips that make up for the bar's border. A seek lands slightly later than the tooltip says.
constexpr float TOOL_TIP_OFFSET = 40;
constexpr float SEEK_OFFSET = 50;

constexpr float MOST_SECONDS = 1e9F;

char lowered(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
}

} // namespace

bool isMp3(std::string_view fileType) {
    return std::ranges::equal(fileType, std::string_view("mp3"), {}, lowered);
}

std::optional<std::string> timeUnderPointer(float X, float width, float maximum) {
    const float exact = (X + TOOL_TIP_OFFSET) / (width / 100.0F) * (maximum / 100.0F);
    if (!(std::fabs(exact) < MOST_SECONDS)) {
        return std::nullopt;
    }
    // Left of the bar a seek goes to the start. nearbyint rounds halves to even.
    const long seconds = std::max(0L, static_cast<long>(std::nearbyint(exact)));
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%02ld:%02ld", seconds / 60, seconds % 60);
    return text.data();
}

std::optional<double> seekTarget(float X, float width, float maximum) {
    const float sum = X + SEEK_OFFSET;
    const float scale = maximum / 100.0F;
    const double target = double{sum} / (double{width} / 100.0) * double{scale};
    return std::isfinite(target) ? std::optional(target) : std::nullopt;
}

float placeOfPosition(double seconds, float width, float maximum) {
    return static_cast<float>(seconds / double{maximum} * double{width}) - SEEK_OFFSET;
}

} // namespace zvonivec
