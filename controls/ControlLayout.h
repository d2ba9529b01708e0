// One row of a form's layout table: the properties of a control when its form is created.
#pragma once

#include "controls/units.h"

#include <string_view>

namespace zvonivec {

enum class Alignment { left, right, centre };

struct ControlLayout {
    std::string_view Name = {};
    // Twips. A control without a size takes the size of its picture.
    float Left = 0;
    float Top = 0;
    float Width = 0;
    float Height = 0;
    std::string_view Caption = {};
    std::string_view ToolTipText = {};
    std::string_view Picture = {}; ///< name of a picture in the skin
    Colour ForeColor = 0;
    Colour BackColor = 0;
    bool Bold = false;
    bool AutoSize = false;   ///< a label is as wide as its caption
    bool Transparent = true; ///< a label has no background of its own
    enum Alignment Alignment = Alignment::left;
    bool Edge = false; ///< a picture box has a fine raised edge
    bool Enabled = true;
    bool Visible = true;
};

} // namespace zvonivec
