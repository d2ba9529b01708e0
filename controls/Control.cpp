#include "controls/Control.h"

#include "controls/ControlLayout.h"
#include "controls/private/control_widget.h"

#include <QAccessible>
#include <cmath>
#include <utility>

namespace zvonivec {

Control::Control(Control& container, std::string name)
    : Control(std::move(name), std::make_unique<ControlWidget>(container.widget_.get())) {
    container_ = &container;
    widget_->show();
}

Control::Control(std::string name, std::unique_ptr<ControlWidget> window)
    : name_(std::move(name)), widget_(std::move(window)) {
    widget_->attach(*this);
}

Control::~Control() = default;

void Control::place() {
    widget_->setGeometry(toPixels(left_), toPixels(top_), toPixels(width_), toPixels(height_));
    if (container_ != nullptr) {
        container_->changed(); // the control's own look hasn't changed
    }
}

void Control::setPlace(float left, float top) {
    left_ = left;
    top_ = top;
}

void Control::changed() {
    for (Control* control = this; control != nullptr; control = control->container_) {
        control->contentChanged();
    }
}

void Control::setLeft(float twips) {
    if (std::isfinite(twips)) {
        left_ = twips;
        place();
    }
}

void Control::setTop(float twips) {
    if (std::isfinite(twips)) {
        top_ = twips;
        place();
    }
}

void Control::setWidth(float twips) {
    setSize(twips, height_);
}

void Control::setSize(float width, float height) {
    if (std::isfinite(width) && std::isfinite(height) && width >= 0 && height >= 0) {
        width_ = width;
        height_ = height;
        place();
        contentChanged(); // place() has notified the containers
    }
}

void Control::setVisible(bool on) {
    visible_ = on;
    widget_->setVisible(on);
    changed();
}

void Control::setEnabled(bool on) {
    enabled_ = on;
    widget_->setEnabled(on);
}

void Control::setToolTipText(const std::string& text) {
    if (text != toolTipText_) {
        toolTipText_ = text;
        widget_->refreshToolTip();
        announceName();
    }
}

void Control::setForeColor(Colour colour) {
    if (colour != foreColour_) {
        foreColour_ = colour;
        repaint();
    }
}

void Control::setBackColor(Colour colour) {
    if (colour != backColour_) {
        backColour_ = colour;
        repaint();
    }
}

void Control::lay(const ControlLayout& row) {
    left_ = row.Left;
    top_ = row.Top;
    width_ = row.Width;
    height_ = row.Height;
    place();
    setToolTipText(std::string(row.ToolTipText));
    setForeColor(row.ForeColor);
    setBackColor(row.BackColor);
    setEnabled(row.Enabled);
    setVisible(row.Visible);
}

void Control::setTabOrder(std::span<Control* const> controls) {
    for (const Control* control : controls) {
        control->widget_->setFocusPolicy(Qt::TabFocus);
        static_cast<ControlWidget*>(control->widget_->window())
            ->TabOrder.push_back(control->widget_.get());
    }
}

void Control::setAccessibleName(const std::string& name) {
    if (name != accessibleName_) {
        accessibleName_ = name;
        announceName();
    }
}

void Control::announce([[maybe_unused]] const std::string& text) {
    if (QAccessible::isActive()) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
        QAccessibleAnnouncementEvent event(widget_.get(), QString::fromStdString(text));
#else
        QAccessibleEvent event(widget_.get(), QAccessible::Alert);
#endif
        QAccessible::updateAccessibility(&event);
    }
}

void Control::setCurrent(bool on) {
    if (on == current_) {
        return;
    }
    current_ = on;
    if (on && QAccessible::isActive()) {
        QAccessibleEvent event(widget_.get(), QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    }
}

void Control::press() {
    if (!enabled_) {
        return;
    }
    const MouseArgs left{.Button = 1, .Shift = 0, .X = Width() / 2, .Y = Height() / 2};
    if (MouseDown) {
        MouseDown(left);
    }
    if (MouseUp) {
        MouseUp(left);
    }
}

void Control::repaint() {
    widget_->update();
    changed();
}

void Control::announceValue() {
    if (QAccessible::isActive()) {
        const auto range = accessibleTraits().range;
        QAccessibleValueChangeEvent event(widget_.get(), range ? range->value : 0);
        QAccessible::updateAccessibility(&event);
    }
}

void Control::announceName() {
    if (QAccessible::isActive()) {
        QAccessibleEvent event(widget_.get(), QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace zvonivec
