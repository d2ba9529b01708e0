#include "platform/modDeklarace.h"

#include <QPolygon>
#include <QRegion>
#include <QWidget>
#include <cstddef>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace zvonivec::modDeklarace {

struct RegionData {
    QRegion pixels;
};

Region CreatePolygonRgn(std::span<const OutlineVertex> vertices, int fillMode) {
    QPolygon polygon;
    for (const OutlineVertex& vertex : vertices) {
        polygon.append(QPoint(vertex.x, vertex.y));
    }
    const Qt::FillRule rule = fillMode == WINDING ? Qt::WindingFill : Qt::OddEvenFill;
    return std::make_shared<const RegionData>(RegionData{QRegion(polygon, rule)});
}

void SetWindowRgn(std::uintptr_t window, const Region& region, bool redraw) {
    QWidget* widget = QWidget::find(window);
    if (widget == nullptr) {
        return;
    }
    if (region) {
        widget->setMask(region->pixels);
    } else {
        widget->clearMask();
    }
    if (redraw) {
        widget->update();
    }
}

void CreateMutexA(const std::string& name) {
    // A socket in the abstract name space: everybody sees it in /proc/net/unix, it is in no folder,
    // and the kernel takes it away with the process. The number keeps copies out of each other's
    // way. The descriptor is kept until the process ends.
    const std::string text = name + " #" + std::to_string(getpid());
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (text.size() + 1 > sizeof(address.sun_path)) {
        return;
    }
    std::memcpy(address.sun_path + 1, text.data(), text.size());
    const int marker = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (marker < 0) {
        return;
    }
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + text.size());
    if (bind(marker, reinterpret_cast<const sockaddr*>(&address), length) != 0) {
        close(marker);
    }
}

} // namespace zvonivec::modDeklarace
