// The main window's table: what stands where.
#pragma once

#include "controls/ControlLayout.h"

#include <span>

namespace zvonivec::layout {

/// The client area, in twips.
inline constexpr float WINDOW_WIDTH = 5055;
inline constexpr float WINDOW_HEIGHT = 5040;

/// Milliseconds between two ticks of Timer1.
inline constexpr int TIMER_INTERVAL = 100;
/// While the window can't be seen.
inline constexpr int UNSEEN_TIMER_INTERVAL = 1000;

/// Every control that shows, as it is when the window is created.
std::span<const ControlLayout> controls();

} // namespace zvonivec::layout
