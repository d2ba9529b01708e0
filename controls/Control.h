// What every control has in common: a name, a place, and what the pointer does to it.
//
// Rules for all controls
//  * They live on the user-interface thread, and setters never throw. A value that a control
//    refuses leaves the one it had.
//  * Texts are UTF-8 and shown as plain text, whatever they look like.
//  * The container outlives the controls in it. A new control lies beneath those that its container
//    had before.
//  * The control under the pointer takes the pointer's events. A press captures the pointer until
//    the release, which therefore reaches the control that got the press, also when it has been
//    disabled in between. A disabled control takes nothing else. A second press of a double click
//    is a press like any other.
#pragma once

#include "controls/units.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

class QPainter;

namespace zvonivec {

class ControlWidget;
struct ControlLayout;

inline constexpr std::int16_t LEFT_BUTTON = 1;
inline constexpr std::int16_t RIGHT_BUTTON = 2;
inline constexpr std::int16_t MIDDLE_BUTTON = 4;

/// The number of the Escape key.
inline constexpr std::int16_t vbKeyEscape = 27;

/// A pointer event: Button is one of the above (in a move: all held, added up), Shift is 1 shift,
/// 2 control, 4 alt, and X and Y are twips from the control's upper left corner.
struct MouseArgs {
    std::int16_t Button = 0;
    std::int16_t Shift = 0;
    float X = 0;
    float Y = 0;
};

/// What assistive technology is told of a control.
struct AccessibleTraits {
    enum class Role { graphic, button, text, bar, checkBox, menuItem, group, window };
    Role role = Role::group;
    std::string name;
};

class Control {
public:
    using MouseHandler = std::function<void(const MouseArgs&)>;

    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;
    virtual ~Control();

    [[nodiscard]] const std::string& Name() const { return name_; }

    /// Twips, kept as given; the screen shows the nearest pixels.
    [[nodiscard]] virtual float Left() const { return left_; }
    [[nodiscard]] virtual float Top() const { return top_; }
    [[nodiscard]] float Width() const { return width_; }
    [[nodiscard]] float Height() const { return height_; }
    virtual void setLeft(float twips);
    virtual void setTop(float twips);
    void setWidth(float twips);

    /// Whether the control is to be shown when its container is.
    [[nodiscard]] bool Visible() const { return visible_; }
    virtual void setVisible(bool on);
    [[nodiscard]] bool Enabled() const { return enabled_; }
    void setEnabled(bool on);

    [[nodiscard]] const std::string& ToolTipText() const { return toolTipText_; }
    void setToolTipText(const std::string& text);

    /// A text that the program keeps with the control; never shown.
    [[nodiscard]] const std::string& Tag() const { return tag_; }
    void setTag(const std::string& text) { tag_ = text; }

    [[nodiscard]] Colour ForeColor() const { return foreColour_; }
    void setForeColor(Colour colour);
    [[nodiscard]] Colour BackColor() const { return backColour_; }
    void setBackColor(Colour colour);

    /// Gives the control all that its row of a layout table says.
    virtual void lay(const ControlLayout& row);

    MouseHandler MouseDown;
    MouseHandler MouseMove;
    MouseHandler MouseUp;

    /// What assistive technology does with the control: a left press and release in its middle.
    virtual void press();
    [[nodiscard]] virtual AccessibleTraits accessibleTraits() const = 0;

protected:
    /// A control in a container.
    Control(Control& container, std::string name);
    /// A window of its own; the form sees to its widget.
    Control(std::string name, std::unique_ptr<ControlWidget> window);

    [[nodiscard]] ControlWidget& widget() const { return *widget_; }
    /// What it lies in; null for a window.
    [[nodiscard]] const Control* container() const { return container_; }
    void setSize(float width, float height);
    /// Changes the place without showing it.
    void setPlace(float left, float top);
    /// Shows place and size.
    void place();
    void repaint();
    /// Tells assistive technology that the name has changed.
    void announceName();

private:
    friend class ControlWidget;
    virtual void paint(QPainter& painter) = 0;
    /// The control, or one in it, looks different from now on.
    virtual void contentChanged() {}
    /// A button was pressed and released over the control.
    virtual void clicked(std::int16_t /*button*/) {}
    void changed();

    std::string name_;
    std::unique_ptr<ControlWidget> widget_;
    Control* container_ = nullptr; ///< of a window: null
    float left_ = 0;
    float top_ = 0;
    float width_ = 0;
    float height_ = 0;
    bool visible_ = true;
    bool enabled_ = true;
    std::string toolTipText_;
    std::string tag_;
    Colour foreColour_ = 0;
    Colour backColour_ = 0;
};

} // namespace zvonivec
