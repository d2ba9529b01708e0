// Operations that the toolkit carries out in the same way on every system.

#include "platform/modDeklarace.h"

#include "platform/window_outline.h"
#include "platform/window_place.h"
#include "platform/window_region.h"

#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <filesystem>
#include <utility>

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

namespace {

/// Shapes a window again when it comes to another screen, when the screen's scale factor changes,
/// and when a compositor comes or goes, until the window gets another region.
class RegionKeeper : public QObject {
public:
    RegionKeeper(QWidget& window, Region region)
        : QObject(&window), region_(std::move(region)), translucent_(isTranslucent(window)) {
        setObjectName(NAME);
        const auto again = [this, &window] {
            translucent_ = isTranslucent(window);
            shapeWindow(window, region_.get(), true);
        };
        const auto watch = [this, again](QScreen* screen) {
            screen->disconnect(this);
            QObject::connect(screen, &QScreen::logicalDotsPerInchChanged, this, again);
        };
        watch(window.screen());
        QObject::connect(window.windowHandle(), &QWindow::screenChanged, this,
                         [watch, again](QScreen* screen) {
                             if (screen != nullptr) {
                                 watch(screen);
                                 again();
                             }
                         });
        watchTranslucency(this, again);
    }
    static RegionKeeper* of(const QWidget& window) {
        return dynamic_cast<RegionKeeper*>(
            window.findChild<QObject*>(NAME, Qt::FindDirectChildrenOnly));
    }
    [[nodiscard]] const RegionData& region() const { return *region_; }
    [[nodiscard]] bool translucent() const { return translucent_; }

private:
    inline static const QString NAME = QStringLiteral("windowRegion");
    Region region_;
    bool translucent_ = false;
};

} // namespace

void SetWindowRgn(std::uintptr_t window, const Region& region, bool redraw) {
    QWidget* widget = QWidget::find(window);
    if (widget == nullptr) {
        return;
    }
    delete RegionKeeper::of(*widget);
    shapeWindow(*widget, region.get(), redraw);
    if (region) {
        new RegionKeeper(*widget, region); // the window owns it
    }
}
ScreenPlace GetCursorPos() {
    const QPointF place = pointerPlace();
    return {.x = place.x(), .y = place.y()};
}

std::string folderSeparator() {
    return {static_cast<char>(std::filesystem::path::preferred_separator)};
}

} // namespace zvonivec::modDeklarace

namespace zvonivec {

void prepareOutline(QWidget& window) {
    if (modDeklarace::windowsMayBeTranslucent()) {
        window.setAttribute(Qt::WA_TranslucentBackground);
    }
}

bool paintsItsOutline(const QWidget& window) {
    const auto* keeper = modDeklarace::RegionKeeper::of(window);
    return keeper != nullptr && keeper->translucent();
}

void eraseOutside(QPainter& painter, const QWidget& window) {
    const auto* keeper = modDeklarace::RegionKeeper::of(window);
    if (keeper == nullptr) {
        return;
    }
    QPainterPath outside; // odd-even: a rectangle with a hole
    outside.addRect(QRectF(window.rect()).adjusted(-1, -1, 1, 1));
    outside.addPolygon(keeper->region().polygon);
    outside.closeSubpath();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.fillPath(outside, Qt::black);
    painter.restore();
}

} // namespace zvonivec
