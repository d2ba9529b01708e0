// Events of the pointer and the keyboard, sent in the way of the display back-end.
#pragma once

#include <QPoint>
#include <QString>
#include <Qt>

class QWindow;

namespace zvonivec::input {

// Places are in pixels from the window's upper left corner. Each call returns when the event and
// all other waiting events have been processed. Calls of press() never make a double click.

void press(QWindow& window, Qt::MouseButton button, QPoint place);
void release(QWindow& window, Qt::MouseButton button, QPoint place);
void move(QWindow& window, QPoint place);
void doubleClick(QWindow& window, Qt::MouseButton button, QPoint place);
/// Presses and releases a key that types a text.
void key(QWindow& window, Qt::Key key, Qt::KeyboardModifiers modifiers = {},
         const QString& text = {});
/// Sends a repetition of a key that is held down.
void repeatKey(QWindow& window, Qt::Key key, Qt::KeyboardModifiers modifiers = {});

} // namespace zvonivec::input
