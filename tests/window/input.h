// Events of the pointer and the keyboard, sent in the way of the display back-end.
#pragma once

#include <QList>
#include <QPoint>
#include <QString>
#include <QUrl>
#include <Qt>

class QWindow;

namespace zvonivec::input {

// Places are in pixels from the window's upper left corner. Each call returns when the event and
// all other waiting events have been processed. Calls of press() never make a double click.

void press(QWindow& window, Qt::MouseButton button, QPoint place);
void release(QWindow& window, Qt::MouseButton button, QPoint place);
void move(QWindow& window, QPoint place);
void doubleClick(QWindow& window, Qt::MouseButton button, QPoint place);
/// Turns the wheel by eighths of a degree, up if above 0. A notch is 120.
void wheel(QWindow& window, QPoint place, int turned);
/// Drags addresses over a window. Returns whether the window would take them at this place.
bool drag(QWindow& window, QPoint place, const QList<QUrl>& urls);
/// Drags addresses over a window and drops them there. Returns whether the window has taken them.
bool drop(QWindow& window, QPoint place, const QList<QUrl>& urls);
/// Presses and releases a key that types a text.
void key(QWindow& window, Qt::Key key, Qt::KeyboardModifiers modifiers = {},
         const QString& text = {});
/// Sends a repetition of a key that is held down.
void repeatKey(QWindow& window, Qt::Key key, Qt::KeyboardModifiers modifiers = {});

} // namespace zvonivec::input
