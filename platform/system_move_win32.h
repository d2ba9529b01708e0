// Windows' own move command, for any button.
#pragma once

class QWidget;

namespace zvonivec {

/// Moves a window by the system's move command. Called in the handler of a press, it returns when
/// the move has ended. The system's move loop knows the left button only: it ends with that
/// button's release, whichever button began the move, and swallows the release. So this function
/// reports the releases of other buttons to the loop. After the move it posts to the window the
/// releases that the toolkit has missed.
///
/// When no button is pressed, as with a finger, or when the system refuses to move the window, the
/// window follows the pointer without the system's loop. User-interface thread. A call during a
/// move does nothing.
void moveBySystem(QWidget& window);

} // namespace zvonivec
