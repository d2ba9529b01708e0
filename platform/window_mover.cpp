#include "platform/window_mover.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPointer>
#include <QWidget>
#include <QWindow>

namespace zvonivec {

namespace {

/// The move that is under way. There is only one pointer. User-interface thread.
QPointer<WindowMover> current;

} // namespace

void WindowMover::start(QWidget& window) {
    if (window.windowHandle() == nullptr || current != nullptr) {
        return;
    }
    if (QGuiApplication::platformName().startsWith(QStringLiteral("wayland"))) {
        window.windowHandle()
            ->startSystemMove(); // under Wayland programs don't place their windows
        return;
    }
    current = new WindowMover(window); // the window owns it
}

WindowMover::WindowMover(QWidget& window) : QObject(&window), window_(window), from_(window.pos()) {
    window.windowHandle()->installEventFilter(this);
}

bool WindowMover::eventFilter(QObject* /*watched*/, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease: {
        const auto& mouse = *static_cast<QMouseEvent*>(event);
        if (mouse.type() == QEvent::MouseButtonRelease || mouse.buttons() != Qt::NoButton) {
            follow(mouse);
        }
        if (mouse.buttons() == Qt::NoButton) {
            end();
        }
        break;
    }
    case QEvent::Hide:
        end();
        break;
    default:
        break;
    }
    return false;
}

void WindowMover::end() {
    current = nullptr;
    window_.windowHandle()->removeEventFilter(this);
    deleteLater();
}

void WindowMover::follow(const QMouseEvent& event) {
    if (!pressedAt_) { // later events may report a second button's press instead
        pressedAt_ = event.points().first().globalPressPosition();
    }
    // Places on the screen don't depend on how far the window has moved meanwhile. The toolkit
    // reports the press in whole logical pixels. On a screen with more pixels the fraction isn't a
    // move.
    const QPointF moved = event.globalPosition() - *pressedAt_;
    window_.move(from_ + QPoint(static_cast<int>(moved.x()), static_cast<int>(moved.y())));
}

} // namespace zvonivec
