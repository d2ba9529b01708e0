#include "platform/box_icon.h"

#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>

namespace zvonivec {

namespace {

constexpr int SIZE = 40; // logical pixels

/// The colours of the disc, from its lit upper part to its lower edge.
struct Glass {
    QRgb lit;
    QRgb middle;
    QRgb edge;
};
constexpr Glass BLUE{0xFF6FE0F4, 0xFF00A0C0, 0xFF004C62};
constexpr Glass RED{0xFFF79A86, 0xFFC8361F, 0xFF64120A};

void drawRim(QPainter& painter, const QRectF& disc) {
    QLinearGradient metal(disc.topLeft(), disc.bottomLeft());
    metal.setColorAt(0, QColor(0xF4, 0xF6, 0xF8));
    metal.setColorAt(0.45, QColor(0x98, 0xA2, 0xAC));
    metal.setColorAt(1, QColor(0x3C, 0x48, 0x54));
    painter.setBrush(metal);
    painter.drawEllipse(disc);
}

void drawGlass(QPainter& painter, const QRectF& disc, const Glass& glass) {
    const QPointF lamp = disc.center() - QPointF(0, disc.height() * 0.2);
    QRadialGradient colour(disc.center(), disc.width() * 0.55, lamp);
    colour.setColorAt(0, glass.lit);
    colour.setColorAt(0.55, glass.middle);
    colour.setColorAt(1, glass.edge);
    painter.setBrush(colour);
    painter.drawEllipse(disc);
}

} // namespace

BoxIcon::BoxIcon(Kind kind) : kind_(kind) {
    setObjectName(QStringLiteral("icon"));
    setFixedSize(SIZE, SIZE);
}

void BoxIcon::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QRectF disc = QRectF(rect()).adjusted(1, 1, -1, -1);
    drawRim(painter, disc);
    drawGlass(painter, disc.adjusted(3, 3, -3, -3), kind_ == Kind::information ? BLUE : RED);

    const QPointF middle = disc.center();
    painter.setPen(QPen(Qt::white, 4.5, Qt::SolidLine, Qt::RoundCap));
    if (kind_ == Kind::information) {
        painter.drawPoint(middle - QPointF(0, 8));
        painter.drawLine(middle - QPointF(0, 1), middle + QPointF(0, 8.5));
    } else {
        constexpr double arm = 6.5;
        painter.drawLine(middle - QPointF(arm, arm), middle + QPointF(arm, arm));
        painter.drawLine(middle - QPointF(arm, -arm), middle + QPointF(arm, -arm));
    }
}

} // namespace zvonivec
