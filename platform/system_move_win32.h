// Windows' own move of a window, with any button.
#pragma once

class QWidget;

namespace zvonivec {

/// Gives a window the system's move command in the handler of a press, and returns when the window
/// has been moved. The system's loop knows the left button alone: it ends with that button's
/// release, whatever button began it, and keeps the release for itself. So the end of the others is
/// told to it, and what the toolkit has not seen of releases is posted to the window afterwards.
///
/// Without a pressed button, as with a finger, and where the system won't move the window, it
/// follows the pointer by itself. User-interface thread; a call during a move does nothing.
void moveBySystem(QWidget& window);

} // namespace zvonivec
