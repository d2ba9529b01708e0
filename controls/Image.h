// A picture on a form. With a MouseUp handler it is a picture button.
#pragma once

#include "controls/Control.h"
#include "controls/Picture.h"

namespace zvonivec {

class Image : public Control {
public:
    Image(Control& container, std::string name);

    /// Sets the picture. The control takes the picture's size and keeps its left and top.
    void setPicture(const Picture& picture);
    [[nodiscard]] const Picture& ShownPicture() const { return picture_; }

    /// Gives the picture a value for assistive technology.
    void setAccessibleRange(const AccessibleTraits::Range& range);

    void lay(const ControlLayout& row) override;
    [[nodiscard]] AccessibleTraits accessibleTraits() const override;

private:
    void paint(QPainter& painter) override;
    [[nodiscard]] double cornerRadius() const override;

    Picture picture_;
    std::optional<AccessibleTraits::Range> range_;
};

} // namespace zvonivec
