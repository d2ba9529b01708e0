// One row of a form's layout table: a control as it stands when its form is created.
#pragma once

#include "controls/units.h"

#include <string_view>

namespace zvonivec {

enum class Alignment { left, right, centre };

struct ControlLayout {
    std::string_view Name = {};
    float Left =
        0; ///< twips, like the next three; 0 × 0 for a control that takes its picture's size
    float Top = 0;
    float Width = 0;
    float Height = 0;
    std::string_view Caption = {};
    std::string_view ToolTipText = {};
    std::string_view Picture = {}; ///< name of a picture among the program's resources
    Colour ForeColor = 0;
    Colour BackColor = 0;
    bool Bold = false;
    bool AutoSize = false;   ///< a label takes the size of its caption
    bool Transparent = true; ///< a label shows what lies beneath it
    enum Alignment Alignment = Alignment::left;
    bool Edge = false;   ///< a picture box has a fine raised edge
    bool Slides = false; ///< a picture box moves all the time within the one that it is in
    bool Enabled = true;
    bool Visible = true;
};

} // namespace zvonivec
