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

    /// Sets the accessible name of a picture without a tooltip.
    void setAccessibleName(const std::string& name);

    void lay(const ControlLayout& row) override;
    [[nodiscard]] AccessibleTraits accessibleTraits() const override;

private:
    void paint(QPainter& painter) override;
    [[nodiscard]] double cornerRadius() const override;

    Picture picture_;
    std::string accessibleName_;
};

} // namespace zvonivec
