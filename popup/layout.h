// The menu's layout table.
#pragma once

#include "controls/ControlLayout.h"

#include <span>

namespace zvonivec::popup_layout {

/// The client area, in twips.
inline constexpr float WINDOW_WIDTH = 2520;
inline constexpr float WINDOW_HEIGHT = 4335;

/// Every control of the menu in its state at the window's creation.
std::span<const ControlLayout> controls();

} // namespace zvonivec::popup_layout
