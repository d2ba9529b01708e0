#include "controls/PictureBox.h"

#include "controls/ControlLayout.h"
#include "controls/private/control_widget.h"
#include "platform/sliding_picture.h"

#include <QImage>
#include <QPainter>
#include <QWindow>
#include <cmath>
#include <utility>

namespace zvonivec {

namespace {

/// A line of one pixel's width around a rectangle, in one colour above and left, in another below
/// and right.
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

PictureBox::~PictureBox() = default;

void PictureBox::setLeft(float twips) {
    if (!slides_) {
        Control::setLeft(twips);
    } else if (std::isfinite(twips)) {
        setPlace(twips, Top());
        if (!slide()) {
            place();
        }
    }
}

/// False where the display server can't.
bool PictureBox::slide() {
    const QWidget& window = *widget().window();
    if (window.windowHandle() == nullptr || !window.windowHandle()->isExposed()) {
        return sliding_ != nullptr; // nothing is seen: the next step shows where it is by then
    }
    const double ratio = window.devicePixelRatioF();
    if (ratio != ratio_) { // asked once: a display that can't won't learn it
        sliding_ = SlidingPicture::in(*widget().parentWidget());
        ratio_ = ratio;
        pictureIsOld_ = true;
    }
    if (sliding_ == nullptr) {
        return false;
    }
    if (pictureIsOld_) {
        QImage picture(widget().size() * ratio, QImage::Format_RGB32);
        picture.setDevicePixelRatio(ratio);
        widget().render(&picture);
        pictureIsOld_ = false;
        serverHasPicture_ = sliding_->setPicture(picture, toQColour(container()->BackColor()));
    }
    if (!serverHasPicture_) {
        return false;
    }
    const auto pixels = [ratio](float twips) {
        return static_cast<int>(std::lround(toPixels(twips) * ratio));
    };
    sliding_->moveTo({pixels(Left()), pixels(Top())});
    return true;
}

void PictureBox::contentChanged() {
    pictureIsOld_ = true;
}

void PictureBox::lay(const ControlLayout& row) {
    edge_ = row.Edge;
    slides_ = row.Slides;
    Control::lay(row);
}

AccessibleTraits PictureBox::accessibleTraits() const {
    return {.role = AccessibleTraits::Role::group, .name = {}};
}

void PictureBox::paint(QPainter& painter) {
    const QRect all = painter.window();
    const QColor ground = toQColour(BackColor());
    painter.fillRect(all, ground);
    if (edge_) {
        // A dark contour against whatever lies behind, then a bevel under the device's lamp.
        drawFrame(painter, all, ground.darker(260), ground.darker(360));
        drawFrame(painter, all.adjusted(1, 1, -1, -1), ground.lighter(150), ground.darker(140));
    }
}

} // namespace zvonivec
