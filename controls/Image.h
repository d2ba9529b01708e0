// A picture on a form; with a pointer handler it is a picture button.
#pragma once

#include "controls/Control.h"
#include "controls/Picture.h"

namespace zvonivec {

class Image : public Control {
public:
    Image(Control& container, std::string name);

    /// The control takes the size of its picture and keeps its left and top.
    void setPicture(const Picture& picture);
    [[nodiscard]] const Picture& ShownPicture() const { return picture_; }

    /// What assistive technology calls a picture that has no tooltip.
    void setAccessibleName(const std::string& name);

    void lay(const ControlLayout& row) override;
    [[nodiscard]] AccessibleTraits accessibleTraits() const override;

private:
    void paint(QPainter& painter) override;

    Picture picture_;
    std::string accessibleName_;
};

} // namespace zvonivec
