// The widget of a control, which turns Qt's events into the control's.
#pragma once

#include "controls/Control.h"

#include <QWidget>
#include <vector>

namespace zvonivec {

[[nodiscard]] inline QColor toQColour(Colour colour) {
    return {static_cast<int>(colour & 0xFFU), static_cast<int>(colour >> 8U & 0xFFU),
            static_cast<int>(colour >> 16U & 0xFFU)};
}

class FocusRing;

class ControlWidget : public QWidget {
public:
    /// Creates a widget within another, or a window when the parent is null. The widget is hidden
    /// at first.
    explicit ControlWidget(QWidget* parent, Qt::WindowFlags flags = {});

    /// Called once by the control that owns the widget.
    void attach(Control& control);
    [[nodiscard]] Control& control() const { return *control_; }

    /// Updates the tooltip if it is on the screen.
    void refreshToolTip();

    /// Called when the window system asks the window to close. The window itself stays open.
    std::function<void()> CloseRequested;
    /// Called when the window has lost the keyboard to another window or is blocked by a box.
    std::function<void()> Deactivated;
    /// Called when the window system has reported a new place of the window.
    std::function<void()> Moved;
    /// Called when a button is pressed anywhere in the form, before the control is told.
    std::function<void()> Pressed;
    /// Called with true when the window becomes visible, and with false when it is hidden or
    /// minimised. What covers the window doesn't matter.
    std::function<void(bool)> SightChanged;
    /// The widgets of a window that the Tab key goes around.
    std::vector<QWidget*> TabOrder;
    /// Called for a window that accepts drops when a file of this machine was dropped on it.
    std::function<void(const std::string&)> FileDropped;
    /// Called for a window when a key is pressed in it. Returns whether the key has been used.
    std::function<bool(const KeyArgs&)> KeyPressed;

protected:
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void takePress(const QMouseEvent& event);
    void takeRelease(const QMouseEvent& event);
    void takeWheel(QWheelEvent& event);
    void takeDrag(QDropEvent& event, bool isDropped);
    bool takeKey(QKeyEvent& event);
    void showFocus();
    /// Ends the presses of all controls of the window.
    void cancelPresses();
    void showToolTip(const QPoint& globalPosition);

    Control* control_ = nullptr;
    FocusRing* focusRing_ = nullptr; ///< of a window in which a control has had the focus
    int wheelTurned_ = 0;            ///< eighths of a degree that make no whole notch yet
    Qt::MouseButtons captured_;      ///< buttons that were pressed over this control
};

} // namespace zvonivec
