// Definition of the region that modDeklarace.h declares.
#pragma once

#include "platform/modDeklarace.h"

#include <QPolygon>
#include <functional>

class QObject;
class QWidget;

namespace zvonivec::modDeklarace {

struct RegionData {
    QPolygon polygon;
    Qt::FillRule rule;

    /// Returns the polygon for a screen with this number of device pixels to a logical pixel. The
    /// vertices are scaled, not the pixels.
    [[nodiscard]] QPolygon at(double ratio) const;
};

/// Whether windows can be seen through in part: a compositor combines them into the screen's
/// picture. A window is prepared for it before it is created, by the toolkit's attribute.
[[nodiscard]] bool windowsMayBeTranslucent();
/// Whether a window that is prepared for it is seen through now.
[[nodiscard]] bool isTranslucent(const QWidget& window);
/// Calls a function whenever the compositor comes or goes.
void watchTranslucency(QObject* receiver, std::function<void()> changed);

/// Shapes a window for the screen that it is on. A null region restores the whole rectangle.
void shapeWindow(QWidget& window, const RegionData* region, bool redraw);

} // namespace zvonivec::modDeklarace
