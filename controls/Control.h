// What all controls have in common: a name, a place and the pointer's events.
//
// Rules for all controls
//  * Controls belong to the user-interface thread. Setters never throw. A control that refuses a
//    value keeps its old value.
//  * Texts are UTF-8 and shown as plain text, even if they look like markup.
//  * The container outlives its controls. A new control lies beneath the container's earlier
//    controls.
//  * The control under the pointer gets the pointer's events. A press captures the pointer until
//    the release. So the release reaches the control that got the press, even if it has been
//    disabled in between. Otherwise a disabled control gets no events. The second press of a double
//    click is a press like any other.
#pragma once

#include "controls/keys.h"
#include "controls/units.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

class QPainter;

namespace zvonivec {

class ControlWidget;
struct ControlLayout;

inline constexpr std::int16_t LEFT_BUTTON = 1;
inline constexpr std::int16_t RIGHT_BUTTON = 2;
inline constexpr std::int16_t MIDDLE_BUTTON = 4;

/// A pointer event. Button is one of the constants above, or in a move the sum of all held buttons.
/// Shift is the sum of the held keys' constants. X and Y are twips from the control's upper left
/// corner.
struct MouseArgs {
    std::int16_t Button = 0;
    std::int16_t Shift = 0;
    float X = 0;
    float Y = 0;
};

/// What a control reports to assistive technology.
struct AccessibleTraits {
    enum class Role {
        graphic,
        button,
        text,
        slider,
        checkBox,
        menuItem,
        separator,
        group,      ///< only what lies in it is reported
        decoration, ///< isn't reported
        window,
        menu
    };
    enum class Check { off, on, undecided };
    struct Range {
        float value = 0;
        float minimum = 0;
        float maximum = 0;
        std::string text = {}; ///< the value as people say it
    };

    Role role = Role::group;
    std::string name = {};
    std::string content = {};        ///< text that changes, of a control with a name of its own
    bool available = true;           ///< a dimmed menu item isn't, though it is enabled
    bool pressable = false;          ///< offers the action that press() carries out
    std::optional<Check> check = {}; ///< of a control that can be switched on and off
    std::optional<Range> range = {}; ///< of a control with a value
};

/// What assistive technology can do with a control beside pressing it. An empty function isn't
/// offered.
struct AccessibleActions {
    std::function<void()> Increase = {};
    std::function<void()> Decrease = {};
    std::function<void()> ShowMenu = {};
    std::function<void(float)> SetValue = {};
};

class Control {
public:
    using MouseHandler = std::function<void(const MouseArgs&)>;

    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;
    virtual ~Control();

    [[nodiscard]] const std::string& Name() const { return name_; }

    /// Twips, stored as given. The screen shows the nearest pixels.
    [[nodiscard]] virtual float Left() const { return left_; }
    [[nodiscard]] virtual float Top() const { return top_; }
    [[nodiscard]] float Width() const { return width_; }
    [[nodiscard]] float Height() const { return height_; }
    virtual void setLeft(float twips);
    virtual void setTop(float twips);
    void setWidth(float twips);

    /// Whether the control is shown when its container is.
    [[nodiscard]] bool Visible() const { return visible_; }
    virtual void setVisible(bool on);
    [[nodiscard]] bool Enabled() const { return enabled_; }
    void setEnabled(bool on);

    [[nodiscard]] const std::string& ToolTipText() const { return toolTipText_; }
    void setToolTipText(const std::string& text);

    /// A text that the program stores in the control. It is never shown.
    [[nodiscard]] const std::string& Tag() const { return tag_; }
    void setTag(const std::string& text) { tag_ = text; }

    [[nodiscard]] Colour ForeColor() const { return foreColour_; }
    void setForeColor(Colour colour);
    [[nodiscard]] Colour BackColor() const { return backColour_; }
    void setBackColor(Colour colour);

    /// Sets all properties from the control's row of a layout table.
    virtual void lay(const ControlLayout& row);

    MouseHandler MouseDown;
    MouseHandler MouseMove;
    MouseHandler MouseUp;
    /// Called instead of MouseUp when a box or dialog opens while a button is held down. The
    /// release then never comes.
    std::function<void()> PressCancelled;

    /// Raised when the wheel has been turned by whole notches, up if above 0. The wheel turns for
    /// the container when a control has no handler.
    std::function<void(int notches)> MouseWheel;

    /// Called later, and not while a box or dialog is open.
    AccessibleActions Accessible;

    /// Sets the name that assistive technology reports instead of the control's text. The text is
    /// then the control's content.
    void setAccessibleName(const std::string& name);

    /// Lets assistive technology say a text now.
    void announce(const std::string& text);

    /// Reports to assistive technology that the keyboard works on this item of a menu, or no
    /// longer.
    void setCurrent(bool on);
    [[nodiscard]] bool IsCurrent() const { return current_; }

    /// Carries out the action of assistive technology: a left press and release in the control's
    /// middle.
    virtual void press();
    [[nodiscard]] virtual AccessibleTraits accessibleTraits() const = 0;

protected:
    /// Creates a control in a container.
    Control(Control& container, std::string name);
    /// Creates a control that is a window. The form sets up the widget.
    Control(std::string name, std::unique_ptr<ControlWidget> window);

    [[nodiscard]] ControlWidget& widget() const { return *widget_; }
    /// The control that contains this one, null for a window.
    [[nodiscard]] const Control* container() const { return container_; }
    [[nodiscard]] const std::string& accessibleName() const { return accessibleName_; }
    void setSize(float width, float height);
    /// Changes the place without moving the widget.
    void setPlace(float left, float top);
    /// Moves the widget to the control's place and size.
    void place();
    void repaint();
    /// Notifies assistive technology of a new name.
    void announceName();
    void announceValue();
    /// Lets the Tab key go around controls of a form in this order. It skips hidden and disabled
    /// controls.
    static void setTabOrder(std::span<Control* const> controls);
    /// Returns the radius of the focus ring's corners, in pixels.
    [[nodiscard]] virtual double cornerRadius() const { return 2; }

private:
    friend class ControlWidget;
    virtual void paint(QPainter& painter) = 0;
    /// Called when the look of this control or of a control in it has changed.
    virtual void contentChanged() {}
    /// Called when a button has been pressed and released over the control.
    virtual void clicked(std::int16_t /*button*/) {}
    void changed();

    std::string name_;
    std::unique_ptr<ControlWidget> widget_;
    Control* container_ = nullptr; ///< null for a window
    float left_ = 0;
    float top_ = 0;
    float width_ = 0;
    float height_ = 0;
    bool visible_ = true;
    bool enabled_ = true;
    bool current_ = false;
    std::string toolTipText_;
    std::string accessibleName_;
    std::string tag_;
    Colour foreColour_ = 0;
    Colour backColour_ = 0;
};

} // namespace zvonivec
