// The main window's layout table.
#pragma once

#include "controls/ControlLayout.h"
#include "controls/units.h"
#include "skin/pictures.h"

#include <span>

namespace zvonivec::layout {

/// The client area, in twips.
inline constexpr float WINDOW_WIDTH = TWIPS_PER_PIXEL * skin::BODY_PICTURE.width;
inline constexpr float WINDOW_HEIGHT = TWIPS_PER_PIXEL * skin::BODY_PICTURE.height;

/// Milliseconds between two ticks of Timer1.
inline constexpr int TIMER_INTERVAL = 100;
/// The same interval while the window is hidden or minimised.
inline constexpr int UNSEEN_TIMER_INTERVAL = 1000;

/// Every visible control in its state at the window's creation.
std::span<const ControlLayout> controls();

} // namespace zvonivec::layout
