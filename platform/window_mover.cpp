#include "platform/window_mover.h"

#include "platform/window_place.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPointer>
#include <QWidget>
#include <QWindow>

namespace zvonivec {

namespace {

/// The move that is under way. There is only one pointer. User-interface thread.
QPointer<WindowMover> current;

constexpr Qt::MouseButtons BUTTONS = Qt::LeftButton | Qt::RightButton | Qt::MiddleButton;

constexpr int CHECK_INTERVAL = 50; ///< milliseconds
/// Checks after which a window manager that has answered counts as unwilling: a tenth of a second.
constexpr int MOST_UNMOVED = 2;
/// Checks after which a window manager that hasn't answered counts as unwilling. It may be busy.
constexpr int MOST_UNANSWERED = 20;

} // namespace

void WindowMover::start(QWidget& window, QPointF from) {
    if (window.windowHandle() == nullptr || current != nullptr) {
        return;
    }
    current = new WindowMover(window, from); // the window owns it
}

WindowMover::WindowMover(QWidget& window, QPointF from)
    : QObject(&window), window_(window), from_(from), asked_(from), pressedAt_(pressPlace()),
      seen_(from) {
    window.windowHandle()->installEventFilter(this);
    timer_.setInterval(CHECK_INTERVAL);
    timer_.callOnTimeout([this] { checkPlace(); });
}

bool WindowMover::eventFilter(QObject* /*watched*/, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease: {
        const auto& mouse = *static_cast<QMouseEvent*>(event);
        const bool pressed = (mouse.buttons() & BUTTONS) != Qt::NoButton;
        if (mouse.type() == QEvent::MouseButtonRelease || pressed) {
            follow(mouse);
        }
        if (!pressed) {
            end();
        }
        break;
    }
    case QEvent::Hide:
    case QEvent::WindowBlocked: // by a box, and the release won't come
        end();
        break;
    default:
        break;
    }
    return false;
}

void WindowMover::end() {
    current = nullptr;
    timer_.stop();
    window_.windowHandle()->removeEventFilter(this);
    deleteLater();
}

void WindowMover::follow(const QMouseEvent& event) {
    if (!pressIsSure_) { // later events may report a second button's press instead
        // In whole logical pixels, which may be too rough. Of several presses at once the system
        // may report another one.
        const QPointF told = event.points().first().globalPressPosition();
        const auto isNear = [told](QPointF place) { return (place - told).manhattanLength() <= 1; };
        if (event.type() == QEvent::MouseButtonRelease && isNear(event.globalPosition())) {
            return; // a click
        }
        if (!pressedAt_ || window_.devicePixelRatioF() == 1 || !isNear(*pressedAt_)) {
            pressedAt_ = told;
        }
        pressIsSure_ = true;
    }
    // Places on the screen don't depend on how far the window has moved meanwhile.
    const QPointF wanted = nearestPlace(from_ + event.globalPosition() - *pressedAt_);
    if (wanted == asked_) {
        return;
    }
    if (!placesAreReported()) {
        window_.windowHandle()->startSystemMove(); // programs don't place their windows there
        end();
        return;
    }
    asked_ = wanted;
    moveWindow(window_, wanted);
    if (!timer_.isActive()) {
        timer_.start();
    }
}

void WindowMover::checkPlace() {
    const auto now = placeOf(window_);
    if (!now || *now == asked_ || *now != seen_) {
        seen_ = now.value_or(seen_);
        timesUnmoved_ = 0;
        reports_ = placeReports();
        return;
    }
    ++timesUnmoved_;
    const bool answered = placeReports() != reports_;
    if (timesUnmoved_ >= (answered ? MOST_UNMOVED : MOST_UNANSWERED) && pressedAt_ &&
        handMoveOver(window_, *now + *pressedAt_ - from_)) {
        window_.windowHandle()->removeEventFilter(this);
        timer_.disconnect();
        timer_.callOnTimeout([this] { checkRelease(); });
    }
}

void WindowMover::checkRelease() {
    if (pointerIsPressed()) {
        return;
    }
    const QPointer<QWindow> window(window_.windowHandle());
    const QPointF place = pointerPlace();
    endHandedMove(window_);
    Qt::MouseButtons pressed = QGuiApplication::mouseButtons() & BUTTONS;
    end();
    // The releases that the window manager has kept.
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
        if (window && pressed.testFlag(button)) {
            pressed.setFlag(button, false);
            QMouseEvent release(QEvent::MouseButtonRelease, place - window->position(), place,
                                button, pressed, QGuiApplication::keyboardModifiers());
            QCoreApplication::sendEvent(window, &release);
        }
    }
}

} // namespace zvonivec
