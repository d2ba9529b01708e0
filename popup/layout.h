// The menu's table: what stands where.
#pragma once

#include "controls/ControlLayout.h"

#include <span>

namespace zvonivec::popup_layout {

/// The client area, in twips.
inline constexpr float WINDOW_WIDTH = 2520;
inline constexpr float WINDOW_HEIGHT = 4335;

/// Every control of the menu, as it is when the window is created.
std::span<const ControlLayout> controls();

} // namespace zvonivec::popup_layout
