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

void Image::setAccessibleName(const std::string& name) {
    if (name != accessibleName_) {
        accessibleName_ = name;
        announceName();
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
            .name = ToolTipText().empty() ? accessibleName_ : ToolTipText(),
            .pressable = isButton};
}

double Image::cornerRadius() const {
    return isRound(picture_) ? picture_.width() / 2.0 : Control::cornerRadius();
}

void Image::paint(QPainter& painter) {
    drawPicture(painter, picture_);
}

} // namespace zvonivec
