#include "tests/window/input.h"

#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QPointer>
#include <QString>
#include <QWheelEvent>
#include <QWindow>
#include <gtest/gtest.h>
#include <qtguiglobal.h>

// The toolkit's own functions for tests. The library that declares them isn't built for every
// system.
Q_GUI_EXPORT void qt_handleMouseEvent(QWindow* window, const QPointF& local, const QPointF& global,
                                      Qt::MouseButtons state, Qt::MouseButton button,
                                      QEvent::Type type, Qt::KeyboardModifiers modifiers,
                                      int timestamp);
Q_GUI_EXPORT void qt_handleKeyEvent(QWindow* window, QEvent::Type type, int key,
                                    Qt::KeyboardModifiers modifiers, const QString& text,
                                    bool autoRepeat, ushort count);

namespace zvonivec::input {

namespace {

Qt::MouseButtons pressed;
int now = 0; ///< milliseconds of a clock that the events advance

void send(QWindow& window, QEvent::Type type, Qt::MouseButton button, QPoint place) {
    constexpr int betweenClicks = 1000; // longer than any double click takes
    pressed.setFlag(button, type == QEvent::MouseButtonPress);
    const QPointer<QWindow> target(&window); // may be deleted while it handles the event
    qt_handleMouseEvent(target, place, window.mapToGlobal(place), pressed, button, type, {}, ++now);
    now += type == QEvent::MouseButtonRelease ? betweenClicks : 0;
}

} // namespace

void press(QWindow& window, Qt::MouseButton button, QPoint place) {
    send(window, QEvent::MouseButtonPress, button, place);
    QCoreApplication::processEvents();
}

void release(QWindow& window, Qt::MouseButton button, QPoint place) {
    send(window, QEvent::MouseButtonRelease, button, place);
    QCoreApplication::processEvents();
}

void move(QWindow& window, QPoint place) {
    qt_handleMouseEvent(&window, place, window.mapToGlobal(place), pressed, Qt::NoButton,
                        QEvent::MouseMove, {}, ++now);
    QCoreApplication::processEvents();
}

void doubleClick(QWindow& window, Qt::MouseButton button, QPoint place) {
    const int first = now;
    send(window, QEvent::MouseButtonPress, button, place);
    send(window, QEvent::MouseButtonRelease, button, place);
    now = first + 3;
    send(window, QEvent::MouseButtonPress, button, place);
    send(window, QEvent::MouseButtonRelease, button, place);
    QCoreApplication::processEvents();
}

void wheel(QWindow& window, QPoint place, int turned) {
    QWheelEvent event(place, window.mapToGlobal(place), {}, QPoint(0, turned), Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&window, &event);
    QCoreApplication::processEvents();
}

bool drag(QWindow& window, QPoint place, const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&window, &enter);
    QDragMoveEvent move(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    move.ignore();
    QCoreApplication::sendEvent(&window, &move);
    const bool taken = move.isAccepted();
    EXPECT_TRUE(!taken || move.dropAction() == Qt::CopyAction);
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(&window, &leave);
    return taken;
}

bool drop(QWindow& window, QPoint place, const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&window, &enter);
    QDropEvent event(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    event.ignore();
    QCoreApplication::sendEvent(&window, &event);
    const bool taken = event.isAccepted();
    QCoreApplication::processEvents();
    return taken;
}

void key(QWindow& window, Qt::Key key, Qt::KeyboardModifiers modifiers, const QString& text) {
    const QPointer<QWindow> target(&window); // may be deleted while it handles the press
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        if (target != nullptr) {
            qt_handleKeyEvent(target, type, key, modifiers, text, false, 1);
        }
    }
    QCoreApplication::processEvents();
}

void repeatKey(QWindow& window, Qt::Key key, Qt::KeyboardModifiers modifiers) {
    qt_handleKeyEvent(&window, QEvent::KeyPress, key, modifiers, {}, true, 1);
    QCoreApplication::processEvents();
}

} // namespace zvonivec::input
