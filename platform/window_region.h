// What a region is, behind modDeklarace's name for it.
#pragma once

#include "platform/modDeklarace.h"

#include <QPolygon>

class QWidget;

namespace zvonivec::modDeklarace {

struct RegionData {
    QPolygon polygon;
    Qt::FillRule rule;

    /// The polygon on a screen with so many pixels to a logical one: it grows, not its pixels.
    [[nodiscard]] QPolygon at(double ratio) const;
};

/// Shapes a window for the screen that it is on; null for the whole rectangle.
void shapeWindow(QWidget& window, const RegionData* region, bool redraw);

} // namespace zvonivec::modDeklarace
