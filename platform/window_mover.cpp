#include "platform/window_mover.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

namespace zvonivec {

void WindowMover::start(QWidget& window) {
    if (window.windowHandle() == nullptr ||
        window.findChild<WindowMover*>({}, Qt::FindDirectChildrenOnly) != nullptr) {
        return;
    }
    if (QGuiApplication::platformName().startsWith(QStringLiteral("wayland"))) {
        window.windowHandle()->startSystemMove(); // no program places its windows there
        return;
    }
    new WindowMover(window); // the window owns it
}

WindowMover::WindowMover(QWidget& window) : QObject(&window), window_(window), from_(window.pos()) {
    window.windowHandle()->installEventFilter(this);
}

bool WindowMover::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease: {
        const auto& mouse = *static_cast<QMouseEvent*>(event);
        if (mouse.type() == QEvent::MouseButtonRelease || mouse.buttons() != Qt::NoButton) {
            follow(mouse);
        }
        if (mouse.buttons() == Qt::NoButton) {
            deleteLater();
            watched->removeEventFilter(this);
        }
        break;
    }
    case QEvent::Hide:
        deleteLater();
        watched->removeEventFilter(this);
        break;
    default:
        break;
    }
    return false;
}

void WindowMover::follow(const QMouseEvent& event) {
    // Places on the screen, so that it doesn't matter how far the window has come meanwhile.
    const QPointF way = event.globalPosition() - event.points().first().globalPressPosition();
    window_.move(from_ + way.toPoint());
}

} // namespace zvonivec
