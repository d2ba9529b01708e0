// A plain coloured area that clips the controls in it.
#pragma once

#include "controls/Control.h"

namespace zvonivec {

class PictureBox : public Control {
public:
    PictureBox(Control& container, std::string name);
    [[nodiscard]] AccessibleTraits accessibleTraits() const override;

private:
    void paint(QPainter& painter) override;
};

} // namespace zvonivec
