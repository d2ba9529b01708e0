// A check box with a caption.
#pragma once

#include "controls/Control.h"
#include "controls/ControlLayout.h"

namespace zvonivec {

class CheckBox : public Control {
public:
    CheckBox(Control& container, std::string name);

    /// 0 off, 1 on, 2 undecided. Any other value is refused. A new value raises Click.
    [[nodiscard]] std::int16_t Value() const { return value_; }
    void setValue(std::int32_t value);

    [[nodiscard]] const std::string& Caption() const { return caption_; }

    /// Raised when Value has changed, by the user or by the program. A left click changes off to
    /// on, and any other value to off.
    std::function<void()> Click;

    void press() override;
    void lay(const ControlLayout& row) override;
    [[nodiscard]] AccessibleTraits accessibleTraits() const override;

private:
    void paint(QPainter& painter) override;
    void clicked(std::int16_t button) override;

    std::string caption_;
    bool bold_ = false;
    std::int16_t value_ = 0;
};

} // namespace zvonivec
