// The device: its body, its buttons and its badges, each at a number of pixels to a layout pixel.
#pragma once

#include "skin/drawing/image.h"

#include <array>

namespace zvonivec::skin {

/// The colour of the display behind its texts.
inline constexpr Rgba DISPLAY_COLOUR{0, 160, 192};
/// Marks and loudspeaker on the display.
inline constexpr Rgba MARK_COLOUR{224, 255, 64};

/// A button's picture in the image list is the one of its state.
enum class ButtonState { normal, hover, pressed, disabled };

/// Of the symbols on the round buttons, in the order of the states.
inline constexpr std::array<Rgba, 4> SYMBOL_COLOURS{{
    {0, 192, 192},
    {64, 255, 255},
    {224, 255, 64},
    {160, 160, 160},
}};

/// The body with empty seats and an empty display, clear exactly outside the window's outline.
Picture drawBody(int scale);

/// Round button 0 (rewind) to 4 (forward). The states differ in the colour of the symbol alone.
Picture drawRoundButton(int button, ButtonState state, int scale);
/// Tile 5 (minimise) or 6 (close), in all states but Disabled.
Picture drawTile(int button, ButtonState state, int scale);
Picture drawDisplayMark(int button, int scale);
Picture drawLoudspeaker(int scale);

/// The badge that opens a file.
Picture drawLogo(int scale);
/// The device in small, square, of that many pixels; with soft edges or with a mask.
Picture drawIcon(int size, bool softEdges);
/// The pointing hand over the bar.
Picture drawHand(int scale);

} // namespace zvonivec::skin
