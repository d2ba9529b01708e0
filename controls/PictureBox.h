// A plain coloured area that clips the controls in it.
#pragma once

#include "controls/Control.h"

namespace zvonivec {

class PictureBox : public Control {
public:
    PictureBox(Control& container, std::string name);

    void lay(const ControlLayout& row) override;
    [[nodiscard]] AccessibleTraits accessibleTraits() const override;

private:
    void paint(QPainter& painter) override;

    bool edge_ = false;
};

} // namespace zvonivec
