#include "controls/Image.h"

#include "controls/ControlLayout.h"
#include "controls/private/picture_data.h"

#include <utility>

namespace zvonivec {

Image::Image(Control& container, std::string name) : Control(container, std::move(name)) {}

void Image::setPicture(const Picture& picture) {
    if (picture == picture_) {
        return;
    }
    picture_ = picture;
    if (picture_) {
        setSize(toTwips(picture_.width()), toTwips(picture_.height()));
    }
    repaint();
}

void Image::setAccessibleRange(const AccessibleTraits::Range& range) {
    const bool isNew = !range_ || range_->value != range.value;
    range_ = range;
    if (isNew) {
        announceValue();
    }
}

void Image::lay(const ControlLayout& row) {
    Control::lay(row);
    if (!row.Picture.empty()) {
        setPicture(Picture(row.Picture));
    }
}

AccessibleTraits Image::accessibleTraits() const {
    const bool isButton = static_cast<bool>(MouseUp);
    return {.role = isButton ? AccessibleTraits::Role::button : AccessibleTraits::Role::graphic,
            .name = ToolTipText().empty() ? accessibleName() : ToolTipText(),
            .pressable = isButton,
            .range = range_};
}

double Image::cornerRadius() const {
    return picture_.width() / (isRound(picture_) ? 2.0 : 8.0);
}

void Image::paint(QPainter& painter) {
    drawPicture(painter, picture_);
}

} // namespace zvonivec
