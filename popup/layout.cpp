#include "popup/layout.h"

#include "main_window/constants.h"

#include <array>

namespace zvonivec::popup_layout {

namespace {

constexpr ControlLayout checkBox(std::string_view name, std::string_view caption, float top) {
    return {.Name = name,
            .Left = 160,
            .Top = top,
            .Width = 2180,
            .Height = 195,
            .Caption = caption,
            .ForeColor = ENABLED_ITEM_COLOR,
            .BackColor = MENU_BACK_COLOR,
            .Bold = true};
}

constexpr ControlLayout item(std::string_view name, std::string_view caption, float top,
                             Colour colour = ENABLED_ITEM_COLOR) {
    return {.Name = name,
            .Left = 120,
            .Top = top,
            .Width = 2220,
            .Height = 195,
            .Caption = caption,
            .ForeColor = colour,
            .BackColor = MENU_BACK_COLOR,
            .Bold = true,
            .Transparent = false};
}

constexpr ControlLayout separator(std::string_view name, float top, bool transparent) {
    ControlLayout row = item(name, "------------------------------------", top);
    row.Alignment = Alignment::centre;
    row.Transparent = transparent;
    return row;
}

/// From top to bottom.
constexpr std::array CONTROLS{
    ControlLayout{.Name = "picPopup",
                  .Width = WINDOW_WIDTH,
                  .Height = WINDOW_HEIGHT,
                  .BackColor = MENU_BACK_COLOR,
                  .Edge = true},
    item("lblPopup_0", " Otevřít...", 120),
    item("lblPopup_1", " Vlastnosti", 360, DISABLED_ITEM_COLOR),
    separator("lblPopup_2", 600, true),
    checkBox("chkPopup_0", "Vždy navrchu", 840),
    checkBox("chkPopup_1", "Přehrávat opakovaně", 1080),
    item("lblPopup_13", " Zesílit hlasitost o 10%", 1320),
    item("lblPopup_14", " Zeslabit hlasitost o 10%", 1560),
    separator("lblPopup_3", 1800, true),
    item("lblPopup_4", " Přetočit dozadu", 2040, DISABLED_ITEM_COLOR),
    item("lblPopup_5", " Pozastavit", 2280, DISABLED_ITEM_COLOR),
    item("lblPopup_6", " Přehrát", 2520, DISABLED_ITEM_COLOR),
    item("lblPopup_7", " Zastavit", 2760, DISABLED_ITEM_COLOR),
    item("lblPopup_8", " Přetočit dopředu", 3000, DISABLED_ITEM_COLOR),
    separator("lblPopup_9", 3240, false),
    item("lblPopup_10", " O programu", 3480),
    item("lblPopup_11", " Minimalizovat", 3720),
    item("lblPopup_12", " Konec", 3960),
};

} // namespace

std::span<const ControlLayout> controls() {
    return CONTROLS;
}

} // namespace zvonivec::popup_layout
