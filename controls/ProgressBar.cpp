#include "controls/ProgressBar.h"

#include "controls/control_widget.h"
#include "controls/picture_data.h"

#include <QAccessible>
#include <QCursor>
#include <QLinearGradient>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

namespace zvonivec {

ProgressBar::ProgressBar(Control& container, std::string name)
    : Control(container, std::move(name)) {}

void ProgressBar::setMax(float max) {
    if (std::isfinite(max) && max > min_) {
        max_ = max;
        value_ = std::min(value_, max_);
        repaint();
    }
}

void ProgressBar::setValue(float value) {
    if (!(value >= min_ && value <= max_) || value == value_) {
        return;
    }
    const int litBefore = litWidth();
    value_ = value;
    if (litWidth() != litBefore) {
        repaint();
        if (QAccessible::isActive()) {
            QAccessibleValueChangeEvent event(&widget(), value_);
            QAccessible::updateAccessibility(&event);
        }
    }
}

void ProgressBar::setMouseIcon(const Picture& picture, int hotX, int hotY) {
    if (picture) {
        widget().setCursor(QCursor(pixmapOf(picture), hotX, hotY));
    } else {
        widget().setCursor(Qt::PointingHandCursor);
    }
}

int ProgressBar::litWidth() const {
    const int inside = std::max(0, toPixels(Width()) - 2);
    return static_cast<int>(
        std::lround((value_ - min_) / (max_ - min_) * static_cast<float>(inside)));
}

AccessibleTraits ProgressBar::accessibleTraits() const {
    return {.role = AccessibleTraits::Role::bar, .name = ToolTipText()};
}

void ProgressBar::paint(QPainter& painter) {
    const QRect all = painter.window();
    painter.fillRect(all, QColor(6, 26, 32));
    painter.setPen(QColor(2, 10, 13));
    painter.drawLine(all.topLeft(), all.topRight());
    painter.drawLine(all.topLeft(), all.bottomLeft());
    painter.setPen(QColor(24, 68, 80));
    painter.drawLine(all.bottomLeft(), all.bottomRight());
    painter.drawLine(all.topRight(), all.bottomRight());
    const QRect lit(all.left() + 1, all.top() + 1, litWidth(), all.height() - 2);
    if (lit.isEmpty()) {
        return;
    }
    QLinearGradient light(lit.topLeft(), lit.bottomLeft());
    light.setColorAt(0.0, QColor(96, 236, 248));
    light.setColorAt(0.35, QColor(0, 192, 208));
    light.setColorAt(1.0, QColor(0, 112, 136));
    painter.fillRect(lit, light);
    painter.fillRect(QRect(lit.right(), lit.top(), 1, lit.height()), QColor(224, 255, 64));
}

} // namespace zvonivec
