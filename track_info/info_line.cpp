// The line of text that slides through the display.

#include "main_window/frmPlayer.h"
#include "track_info/rules.h"

#include <array>

namespace zvonivec {

namespace {

struct InfoItem {
    std::string_view attribute;
    std::string_view label;
};

constexpr std::array INFO_ITEMS{
    InfoItem{"Album", "Album: "},
    InfoItem{"Title", "Skladba: "},
    InfoItem{"Author", "Interpret: "},
};

constexpr std::string_view SEPARATOR = "        ";

} // namespace

std::string frmPlayer::RateLine() {
    // The engine bounds this loop: it waits in each call, and answers True in the end.
    while (!WMP->currentMedia().isReadOnlyItem("Bitrate")) {
    }
    return "Přehrávání: " + rateText(WMP->currentMedia().getItemInfo("Bitrate"));
}

std::string frmPlayer::BuildInfoLine() {
    std::string line = RateLine();
    for (const InfoItem& item : INFO_ITEMS) {
        const std::string value = WMP->currentMedia().getItemInfo(item.attribute);
        if (!value.empty()) {
            line.append(SEPARATOR).append(item.label).append(value);
        }
    }
    return line;
}

} // namespace zvonivec
