#include "controls/ProgressBar.h"

#include "controls/private/control_widget.h"
#include "controls/private/picture_data.h"
#include "platform/display.h"

#include <QCursor>
#include <QLinearGradient>
#include <QPainter>
#include <QPixmap>
#include <algorithm>
#include <cmath>
#include <utility>

namespace zvonivec {

namespace {

/// Distance of two segments of the track. The last pixel is the gap between them. Four segments
/// make a part of the scale that is printed above the bar.
constexpr int SEGMENT = 4;

int inPixels(double logical, double ratio) {
    return static_cast<int>(std::lround(logical * ratio));
}

/// Returns a picture of the whole track, lit or not. Edges are rounded to device pixels, so that
/// none falls between two of them.
QPixmap trackPicture(const QSize& size, double ratio, bool lit) {
    QPixmap picture(size);
    picture.fill(QColor(2, 8, 10));
    const int top = inPixels(1, ratio);
    const int bottom = size.height() - top;
    QLinearGradient light(0, top, 0, bottom);
    light.setColorAt(0.00, QColor(176, 246, 252));
    light.setColorAt(0.22, QColor(48, 220, 238));
    light.setColorAt(0.50, QColor(0, 180, 208));
    light.setColorAt(1.00, QColor(0, 96, 122));
    const QBrush with = lit ? QBrush(light) : QBrush(QColor(7, 40, 50));
    QPainter painter(&picture);
    for (int start = 0; inPixels(start + SEGMENT, ratio) <= size.width(); start += SEGMENT) {
        const int left = inPixels(start, ratio);
        const int right = inPixels(start + SEGMENT - 1, ratio);
        painter.fillRect(left, top, right - left, bottom - top, with);
    }
    painter.end();
    picture.setDevicePixelRatio(ratio);
    return picture;
}

} // namespace

/// Pictures of the track, drawn once and then copied.
struct ProgressBar::Tracks {
    QPixmap empty;
    QPixmap lit;
};

ProgressBar::ProgressBar(Control& container, std::string name)
    : Control(container, std::move(name)) {
    widget().setAttribute(Qt::WA_OpaquePaintEvent);
}

ProgressBar::~ProgressBar() = default;

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
        announceValue();
    }
}

void ProgressBar::setMouseIcon(const Picture& picture, int hotX, int hotY) {
    if (picture) {
        const QPixmap pixmap = pixmapOf(picture, widget().devicePixelRatioF());
        const double scale = hotSpotIsInDevicePixels() ? pixmap.devicePixelRatio() : 1;
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
    const auto seconds = static_cast<long>(value_);
    const QString time = QStringLiteral("%1:%2")
                             .arg(seconds / 60, 2, 10, QChar(u'0'))
                             .arg(seconds % 60, 2, 10, QChar(u'0'));
    return {.role = AccessibleTraits::Role::slider,
            .name = accessibleName(),
            .range = AccessibleTraits::Range{
                .value = value_, .minimum = min_, .maximum = max_, .text = time.toStdString()}};
}

void ProgressBar::paint(QPainter& painter) {
    const double ratio = widget().devicePixelRatioF();
    const QSize size = (QSizeF(painter.window().size()) * ratio).toSize();
    if (tracks_ == nullptr || tracks_->empty.size() != size ||
        tracks_->empty.devicePixelRatio() != ratio) {
        tracks_ = std::make_unique<Tracks>(Tracks{.empty = trackPicture(size, ratio, false),
                                                  .lit = trackPicture(size, ratio, true)});
    }
    const int lit = litWidth();
    const auto copy = [&](const QPixmap& track, int left, int right) {
        painter.drawPixmap(QPointF(left / ratio, 0), track,
                           QRectF(left, 0, right - left, size.height()));
    };
    copy(tracks_->lit, 0, lit);
    copy(tracks_->empty, lit, size.width());
    if (lit > 0) {
        // The end of the lit part stands out, even within a segment or in a gap.
        const int left = std::max(0, lit - inPixels(2, ratio));
        const int top = inPixels(1, ratio);
        const int bottom = inPixels(painter.window().height() - 1, ratio);
        painter.fillRect(
            QRectF(left / ratio, top / ratio, (lit - left) / ratio, (bottom - top) / ratio),
            QColor(224, 255, 64));
    }
}

} // namespace zvonivec
