#include "controls/PictureBox.h"

#include "controls/ControlLayout.h"
#include "controls/private/control_widget.h"

#include <QPainter>
#include <utility>

namespace zvonivec {

namespace {

/// Draws a frame of one pixel's width, lit above and on the left, shaded below and on the right.
void drawFrame(QPainter& painter, const QRect& box, const QColor& lit, const QColor& shaded) {
    painter.fillRect(box.left(), box.top(), box.width(), 1, lit);
    painter.fillRect(box.left(), box.top(), 1, box.height(), lit);
    painter.fillRect(box.left(), box.bottom(), box.width(), 1, shaded);
    painter.fillRect(box.right(), box.top(), 1, box.height(), shaded);
}

} // namespace

PictureBox::PictureBox(Control& container, std::string name) : Control(container, std::move(name)) {
    widget().setAttribute(Qt::WA_OpaquePaintEvent);
}

void PictureBox::lay(const ControlLayout& row) {
    edge_ = row.Edge;
    Control::lay(row);
}

AccessibleTraits PictureBox::accessibleTraits() const {
    return {.role = AccessibleTraits::Role::group};
}

void PictureBox::paint(QPainter& painter) {
    const QRect all = painter.window();
    const QColor ground = toQColour(BackColor());
    painter.fillRect(all, ground);
    if (edge_) {
        // A dark contour that stands out from any background, and a bevel within it.
        drawFrame(painter, all, ground.darker(260), ground.darker(360));
        drawFrame(painter, all.adjusted(1, 1, -1, -1), ground.lighter(150), ground.darker(140));
    }
}

} // namespace zvonivec
