// Operations that the toolkit carries out in the same way on every system.

#include "platform/modDeklarace.h"

#include "platform/window_region.h"

#include <QCursor>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <filesystem>

namespace zvonivec::modDeklarace {

QPolygon RegionData::at(double ratio) const {
    QPolygon scaled;
    for (const QPoint vertex : polygon) {
        scaled.append((QPointF(vertex) * ratio).toPoint());
    }
    return scaled;
}

Region CreatePolygonRgn(std::span<const Point> vertices, int fillMode) {
    QPolygon polygon;
    for (const Point vertex : vertices) {
        polygon.append(QPoint(vertex.x, vertex.y));
    }
    const Qt::FillRule rule = fillMode == WINDING ? Qt::WindingFill : Qt::OddEvenFill;
    return std::make_shared<const RegionData>(RegionData{polygon, rule});
}

void SetWindowRgn(std::uintptr_t window, const Region& region, bool redraw) {
    QWidget* widget = QWidget::find(window);
    if (widget == nullptr) {
        return;
    }
    // Shapes the window again when it comes to another screen and when the screen's scale factor
    // changes, until the window gets another region.
    const auto keeperName = QStringLiteral("windowRegion");
    delete widget->findChild<QObject*>(keeperName, Qt::FindDirectChildrenOnly);
    shapeWindow(*widget, region.get(), redraw);
    if (!region) {
        return;
    }
    auto* keeper = new QObject(widget);
    keeper->setObjectName(keeperName);
    const auto again = [widget, region] { shapeWindow(*widget, region.get(), true); };
    const auto watch = [keeper, again](QScreen* screen) {
        screen->disconnect(keeper);
        QObject::connect(screen, &QScreen::logicalDotsPerInchChanged, keeper, again);
    };
    watch(widget->screen());
    QObject::connect(widget->windowHandle(), &QWindow::screenChanged, keeper,
                     [watch, again](QScreen* screen) {
                         if (screen != nullptr) {
                             watch(screen);
                             again();
                         }
                     });
}

Point GetCursorPos() {
    // The toolkit knows the screens, so it converts the system's pixels to logical ones.
    const QPoint place = QCursor::pos();
    return {.x = place.x(), .y = place.y()};
}

std::string folderSeparator() {
    return {static_cast<char>(std::filesystem::path::preferred_separator)};
}

} // namespace zvonivec::modDeklarace
