#include "controls/private/focus_ring.h"

#include <QPainter>

namespace zvonivec {

namespace {

/// Pixels from the control to the outer edge of the ring.
constexpr int ROOM = 3;

} // namespace

FocusRing::FocusRing(QWidget& window) : QWidget(&window) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setObjectName(QStringLiteral("focusRing"));
    hide();
}

void FocusRing::surround(const QRect& place, double radius) {
    radius_ = radius;
    setGeometry(place.adjusted(-ROOM, -ROOM, ROOM, ROOM));
    raise();
    show();
    update();
}

void FocusRing::paintEvent(QPaintEvent* /*event*/) {
    constexpr double half = ROOM / 2.0;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF line = QRectF(rect()).adjusted(half, half, -half, -half);
    const auto draw = [&](const QColor& colour, double width) {
        painter.setPen(QPen(colour, width));
        painter.drawRoundedRect(line, radius_ + half, radius_ + half);
    };
    // The dark edge makes the light line stand out from the metal too.
    draw(QColor(6, 26, 32), ROOM);
    draw(QColor(224, 255, 64), 1.5);
}

} // namespace zvonivec
