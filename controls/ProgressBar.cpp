#include "controls/ProgressBar.h"

#include "controls/control_widget.h"
#include "controls/picture_data.h"

#include <QAccessible>
#include <QCursor>
#include <QGuiApplication>
#include <QLinearGradient>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

namespace zvonivec {

namespace {

/// From one segment of the track to the next, the last pixel being the gap. Four of them make a
/// part of the scale that is printed over the bar.
constexpr int SEGMENT = 4;

} // namespace

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
        const QPixmap pixmap = pixmapOf(picture, widget().devicePixelRatioF());
        // Under X11 the toolkit takes the hot spot for a place in the picture as it is stored.
        const double scale =
            QGuiApplication::platformName() == "xcb" ? pixmap.devicePixelRatio() : 1;
        widget().setCursor(QCursor(pixmap, static_cast<int>(std::lround(hotX * scale)),
                                   static_cast<int>(std::lround(hotY * scale))));
    } else {
        widget().setCursor(Qt::PointingHandCursor);
    }
}

int ProgressBar::litWidth() const {
    const double all = toPixels(Width()) * widget().devicePixelRatioF();
    return static_cast<int>(std::lround(double{value_ - min_} / double{max_ - min_} * all));
}

AccessibleTraits ProgressBar::accessibleTraits() const {
    return {.role = AccessibleTraits::Role::bar, .name = ToolTipText()};
}

void ProgressBar::paint(QPainter& painter) {
    // Everything is laid out in the screen's own pixels, so that no edge falls between two of them.
    const double ratio = widget().devicePixelRatioF();
    const QRect all = painter.window();
    const auto pixels = [ratio](double logical) {
        return static_cast<int>(std::lround(logical * ratio));
    };
    const auto fill = [&painter, ratio](int left, int top, int right, int bottom,
                                        const auto& with) {
        painter.fillRect(
            QRectF(left / ratio, top / ratio, (right - left) / ratio, (bottom - top) / ratio),
            with);
    };
    const int top = pixels(1);
    const int bottom = pixels(all.height() - 1);
    const int lit = litWidth();
    QLinearGradient light(0, top / ratio, 0, bottom / ratio);
    light.setColorAt(0.00, QColor(176, 246, 252));
    light.setColorAt(0.22, QColor(48, 220, 238));
    light.setColorAt(0.50, QColor(0, 180, 208));
    light.setColorAt(1.00, QColor(0, 96, 122));

    painter.fillRect(all, QColor(2, 8, 10));
    for (int start = 0; start + SEGMENT <= all.width(); start += SEGMENT) {
        const int left = pixels(start);
        const int right = pixels(start + SEGMENT - 1);
        const int end = std::clamp(lit, left, right);
        fill(left, top, end, bottom, light);
        fill(end, top, right, bottom, QColor(7, 40, 50));
    }
    if (lit > 0) {
        // Where the playing is: the end stands out, also within a segment or between two.
        fill(std::max(0, lit - pixels(2)), top, lit, bottom, QColor(224, 255, 64));
    }
}

} // namespace zvonivec
