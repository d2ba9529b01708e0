// Draws the device: body, buttons and badges. The scale is in pixels to a layout pixel.
#pragma once

#include "skin/drawing/image.h"

#include <array>

namespace zvonivec::skin {

/// The background of the texts on the display.
inline constexpr Rgba DISPLAY_COLOUR{0, 160, 192};
/// The colour of marks and loudspeaker on the display.
inline constexpr Rgba MARK_COLOUR{224, 255, 64};

/// The states of a button.
enum class ButtonState { normal, hover, pressed, disabled };

/// The colours of the symbols on the round buttons, in the order of the states.
inline constexpr std::array<Rgba, 4> SYMBOL_COLOURS{{
    {0, 192, 192},
    {64, 255, 255},
    {224, 255, 64},
    {160, 160, 160},
}};

/// Draws the body with empty seats and an empty display. It is clear exactly outside the outline.
Picture drawBody(int scale);

/// Draws round button 0 (rewind) to 4 (forward). Only the colour of the symbol depends on the
/// state.
Picture drawRoundButton(int button, ButtonState state, int scale);
/// Draws tile 5 (minimise) or 6 (close), in all states but disabled.
Picture drawTile(int button, ButtonState state, int scale);
Picture drawDisplayMark(int button, int scale);
Picture drawLoudspeaker(int scale);

/// Draws the badge that opens a file.
Picture drawLogo(int scale);
/// Draws the device in a square of this size, with soft edges or with a mask.
Picture drawIcon(int size, bool softEdges);
/// Draws the pointing hand over the bar.
Picture drawHand(int scale);

} // namespace zvonivec::skin
