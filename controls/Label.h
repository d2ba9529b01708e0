// A line of text on a form.
#pragma once

#include "controls/Control.h"
#include "controls/ControlLayout.h"

namespace zvonivec {

class Label : public Control {
public:
    Label(Control& container, std::string name);

    /// "&&" shows as "&", and "&x" as an underlined x. Control characters show as blanks. A label
    /// with AutoSize is as wide as its caption, but at least 3 pixels. A right-aligned label keeps
    /// its right edge.
    [[nodiscard]] const std::string& Caption() const { return caption_; }
    void setCaption(const std::string& text);

    /// Raised after a left or right press and release over the label. A label with this handler is
    /// a menu item to assistive technology.
    std::function<void()> Click;

    /// Makes the label the shadow of a label with the same caption that lies a pixel left of and
    /// above it. A shadow stays out of the gaps between the other label's strokes, and assistive
    /// technology doesn't report it.
    void setShadow(bool on) { shadow_ = on; }

    /// Whether a click has an effect, which a menu item's colour shows and assistive technology
    /// says. The label takes the pointer all the same.
    void setAvailable(bool on);

    void press() override;
    void lay(const ControlLayout& row) override;
    [[nodiscard]] AccessibleTraits accessibleTraits() const override;

private:
    void paint(QPainter& painter) override;
    void clicked(std::int16_t button) override;
    void fit();

    std::string caption_;
    bool bold_ = false;
    bool autoSize_ = false;
    bool transparent_ = true;
    bool available_ = true;
    bool shadow_ = false;
    enum Alignment alignment_ = Alignment::left;
};

} // namespace zvonivec
