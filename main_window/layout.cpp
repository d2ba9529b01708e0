#include "main_window/layout.h"

#include "main_window/constants.h"
#include "skin/pictures.h"
#include "skin/places.h"

#include <array>
#include <string_view>

namespace zvonivec::layout {

namespace {

constexpr Colour DISPLAY_COLOUR = rgb(0, 160, 192);

/// A control on the body that takes the size of its picture.
consteval ControlLayout at(std::string_view name, ControlLayout control) {
    const skin::Place place = skin::placeOf(name);
    control.Name = name;
    control.Left = TWIPS_PER_PIXEL * static_cast<float>(place.left);
    control.Top = TWIPS_PER_PIXEL * static_cast<float>(place.top);
    return control;
}

/// A control that fills its place on the body.
consteval ControlLayout filling(std::string_view name, const ControlLayout& control) {
    const skin::Place place = skin::placeOf(name);
    ControlLayout placed = at(name, control);
    placed.Width = TWIPS_PER_PIXEL * static_cast<float>(place.width);
    placed.Height = TWIPS_PER_PIXEL * static_cast<float>(place.height);
    return placed;
}

/// What is drawn lies where skin/places.h says. The texts' places, which needn't be whole pixels,
/// stand here.
constexpr std::array CONTROLS{
    ControlLayout{.Name = "picBGround",
                  .Left = 1290,
                  .Top = 860,
                  .Width = 2455,
                  .Height = 220,
                  .BackColor = DISPLAY_COLOUR},
    ControlLayout{.Name = "picDisplay", .Width = 2455, .Height = 220, .BackColor = DISPLAY_COLOUR},
    ControlLayout{.Name = "lbl_Info",
                  .Width = 3855,
                  .Height = 195,
                  .Caption = WELCOME_TEXT,
                  .ForeColor = rgb(255, 255, 0),
                  .Bold = true,
                  .AutoSize = true},
    ControlLayout{.Name = "lbl_Info_SH",
                  .Left = 15,
                  .Top = 15,
                  .Width = 3855,
                  .Height = 195,
                  .Caption = WELCOME_TEXT,
                  .ForeColor = rgb(224, 224, 224),
                  .Bold = true,
                  .AutoSize = true},
    filling("PB", {.Visible = false}),
    at("imgVolume", {.Picture = skin::VOLUME_PICTURE.file}),
    ControlLayout{.Name = "lblStatus",
                  .Left = 1665,
                  .Top = 1110,
                  .Width = 915,
                  .Height = 195,
                  .Caption = "50% hlasitost",
                  .ForeColor = rgb(255, 255, 128),
                  .AutoSize = true},
    at("imgLogo", {.ToolTipText = "Otevřít soubor MP3", .Picture = skin::LOGO_PICTURE.file}),
    at("imgDisplay_Mark", {.ToolTipText = "Zastavit"}),
    filling("imgButtons_6", {.ToolTipText = "Zavřít"}),
    filling("imgButtons_5", {.ToolTipText = "Minimalizovat"}),
    filling("imgButtons_4", {.ToolTipText = "Přetočit dopředu", .Enabled = false}),
    filling("imgButtons_3", {.ToolTipText = "Zastavit", .Enabled = false}),
    filling("imgButtons_2", {.ToolTipText = "Přehrát", .Enabled = false}),
    filling("imgButtons_1", {.ToolTipText = "Pozastavit", .Enabled = false}),
    ControlLayout{.Name = "lblTime_1",
                  .Left = 4425,
                  .Top = 3960,
                  .Width = 45,
                  .Height = 195,
                  .ToolTipText = "Délka skladby",
                  .ForeColor = rgb(255, 255, 192),
                  .AutoSize = true,
                  .Alignment = Alignment::right,
                  .Visible = false},
    ControlLayout{.Name = "lblTime_0",
                  .Left = 600,
                  .Top = 3960,
                  .Width = 45,
                  .Height = 195,
                  .ToolTipText = "Aktuální pozice přehrávání",
                  .ForeColor = rgb(192, 255, 192),
                  .AutoSize = true,
                  .Visible = false},
    filling("imgButtons_0", {.ToolTipText = "Přetočit dozadu", .Enabled = false}),
};

} // namespace

std::span<const ControlLayout> controls() {
    return CONTROLS;
}

} // namespace zvonivec::layout
