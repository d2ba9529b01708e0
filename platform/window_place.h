// Places of windows on the screen, as the window system knows them.
//
// Places are those of a window's upper left corner, in logical pixels. Where a logical pixel is
// several device pixels, a place may lie between two logical ones. The toolkit's own places are
// whole, and they are those that were asked for, even when the window manager has refused them.
// User-interface thread.
#pragma once

#include <QPoint>
#include <QPointF>
#include <functional>
#include <optional>

class QWidget;

namespace zvonivec {

/// Whether the system reports places. Under Wayland it doesn't.
[[nodiscard]] bool placesAreReported();

/// Returns the place of a window, or nothing when the system doesn't report it. When the system is
/// gone, that is the place that it reported last, or that the window was asked to take since.
[[nodiscard]] std::optional<QPointF> placeOf(const QWidget& window);

/// Moves a window to the nearest device pixel. A window manager may put it elsewhere.
void moveWindow(QWidget& window, QPointF place);
/// Asks the window manager once more and without regard to its frame. Some refuse the ordinary
/// request and carry out this one.
void insistOnPlace(QWidget& window, QPointF place);

/// Returns the place that a window has at the device pixel nearest to a place.
[[nodiscard]] QPointF nearestPlace(QPointF place);

/// Returns the pointer's place on the screen, in logical pixels.
[[nodiscard]] QPointF pointerPlace();

/// Returns the place of the last press of a pointer button in this program, where the system knows
/// it more exactly than the toolkit.
[[nodiscard]] std::optional<QPointF> pressPlace();

/// Returns how often the window manager has reported a window's place so far, changed or not.
[[nodiscard]] unsigned placeReports();

/// Lets the window manager go on with a move that the program has begun: it keeps the point of the
/// window that is now at a place of the screen under the pointer until the buttons are released.
/// The release doesn't reach the program. Returns false where a window manager can't do that.
bool handMoveOver(QWidget& window, QPointF pressed);

/// Ends a move that was handed over, if the window manager hasn't noticed the release.
void endHandedMove(QWidget& window);

/// Whether one of the pointer's buttons is pressed, in whichever program.
[[nodiscard]] bool pointerIsPressed();

/// Calls a function with true whenever other windows have come to cover a window wholly, and with
/// false whenever a part of it is free again. Called once for a window that the system has. Where
/// the system doesn't tell, the function is never called.
void watchCover(QWidget& window, std::function<void(bool)> function);

/// Minimises a window. A window manager may refuse, and then the window counts as not minimised.
void minimise(QWidget& window);

/// Whether the system has minimised a window, even where the toolkit hasn't been told yet. A window
/// whose window manager has died stands on the screen and isn't minimised any more.
[[nodiscard]] bool isMinimised(const QWidget& window);

} // namespace zvonivec
