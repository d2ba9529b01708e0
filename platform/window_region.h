// Definition of the region that modDeklarace.h declares.
#pragma once

#include "platform/modDeklarace.h"

#include <QPolygon>

class QWidget;

namespace zvonivec::modDeklarace {

struct RegionData {
    QPolygon polygon;
    Qt::FillRule rule;

    /// Returns the polygon for a screen with this number of device pixels to a logical pixel. The
    /// vertices are scaled, not the pixels.
    [[nodiscard]] QPolygon at(double ratio) const;
};

/// Shapes a window for the screen that it is on. A null region restores the whole rectangle.
void shapeWindow(QWidget& window, const RegionData* region, bool redraw);

} // namespace zvonivec::modDeklarace
