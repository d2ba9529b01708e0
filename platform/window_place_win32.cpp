#include "platform/window_place.h"

#include <QCursor>
#include <QGuiApplication>
#include <QWidget>
#include <cmath>

namespace zvonivec {

bool placesAreReported() {
    return true;
}

std::optional<QPointF> placeOf(const QWidget& window) {
    return window.pos();
}

void moveWindow(QWidget& window, QPointF place) {
    window.move(nearestPlace(place).toPoint());
}

void insistOnPlace(QWidget& /*window*/, QPointF /*place*/) {}

QPointF nearestPlace(QPointF place) {
    return {std::floor(place.x() + 0.5), std::floor(place.y() + 0.5)};
}

QPointF pointerPlace() {
    return QCursor::pos();
}

std::optional<QPointF> pressPlace() {
    return std::nullopt;
}

unsigned placeReports() {
    return 0;
}

bool handMoveOver(QWidget& /*window*/, QPointF /*pressed*/) {
    return false; // the system has its own move, which comes first
}

void endHandedMove(QWidget& /*window*/) {}

bool pointerIsPressed() {
    return QGuiApplication::mouseButtons() != Qt::NoButton;
}

void watchCover(QWidget& /*window*/, std::function<void(bool)> /*function*/) {}

void minimise(QWidget& window) {
    window.showMinimized();
}

bool isMinimised(const QWidget& window) {
    return window.isMinimized();
}

} // namespace zvonivec
