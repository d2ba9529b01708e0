// The pointer and the keyboard, as the display back-end hands their events to the toolkit.
#pragma once

#include <QPoint>
#include <Qt>

class QWindow;

namespace zvonivec::input {

// Places are in pixels from the window's upper left corner. Each call returns when the event, and
// whatever else was waiting, has been served. Presses never count as the second of a double click.

void press(QWindow& window, Qt::MouseButton button, QPoint place);
void release(QWindow& window, Qt::MouseButton button, QPoint place);
void move(QWindow& window, QPoint place);
void doubleClick(QWindow& window, Qt::MouseButton button, QPoint place);
/// Presses and releases a key.
void key(QWindow& window, Qt::Key key);

} // namespace zvonivec::input
