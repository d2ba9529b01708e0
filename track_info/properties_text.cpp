// The text of the properties box.

#include "main_window/frmPlayer.h"
#include "platform/file_names.h"
#include "track_info/rules.h"

#include <array>

namespace zvonivec {

namespace {

struct PropertiesItem {
    std::string_view attribute;
    std::string_view label;
};

constexpr std::array PROPERTIES_ITEMS{
    PropertiesItem{"Author", "Interpret: "}, PropertiesItem{"Title", "Skladba: "},
    PropertiesItem{"Album", "Album: "},      PropertiesItem{"Description", "Komentář: "},
    PropertiesItem{"Genre", "Žánr: "},       PropertiesItem{"WM/Year", "Rok: "},
};

constexpr std::string_view LINE_END = "\r\n";

} // namespace

std::string frmPlayer::BuildPropertiesText() {
    std::string text = RateLine();
    text.append(LINE_END)
        .append("Délka skladby: ")
        .append(WMP->currentMedia().durationString())
        .append(LINE_END);
    for (const PropertiesItem& item : PROPERTIES_ITEMS) {
        const std::string value = WMP->currentMedia().getItemInfo(item.attribute);
        if (!value.empty()) {
            text.append(item.label).append(value).append(LINE_END);
        }
    }
    return text.append(LINE_END).append("URL: ").append(shownPath(WMP->URL()));
}

} // namespace zvonivec
