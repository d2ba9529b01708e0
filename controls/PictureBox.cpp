#include "controls/PictureBox.h"

#include "controls/control_widget.h"

#include <QPainter>
#include <utility>

namespace zvonivec {

PictureBox::PictureBox(Control& container, std::string name) : Control(container, std::move(name)) {
    widget().setAttribute(Qt::WA_OpaquePaintEvent);
}

AccessibleTraits PictureBox::accessibleTraits() const {
    return {.role = AccessibleTraits::Role::group, .name = {}};
}

void PictureBox::paint(QPainter& painter) {
    painter.fillRect(painter.window(), toQColor(BackColor()));
}

} // namespace zvonivec
