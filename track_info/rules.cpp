#include "track_info/rules.h"

namespace zvonivec {

std::string rateText(std::string_view bitrate) {
    constexpr std::string_view thousands = "000";
    if (bitrate.ends_with(thousands)) {
        return std::string(bitrate.substr(0, bitrate.size() - thousands.size())) + " kb/s";
    }
    return std::string(bitrate) + " b/s";
}

std::string doubledAmpersands(std::string_view text) {
    std::string doubled;
    for (const char character : text) {
        doubled.append(character == '&' ? 2U : 1U, character);
    }
    return doubled;
}

} // namespace zvonivec
