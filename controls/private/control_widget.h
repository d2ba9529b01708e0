// The Qt side of a control: turns Qt's events into the control's.
#pragma once

#include "controls/Control.h"

#include <QWidget>

namespace zvonivec {

[[nodiscard]] inline QColor toQColour(Colour colour) {
    return {static_cast<int>(colour & 0xFFU), static_cast<int>(colour >> 8U & 0xFFU),
            static_cast<int>(colour >> 16U & 0xFFU)};
}

class ControlWidget : public QWidget {
public:
    /// A widget in another, or a window (parent null). It stays hidden until it is shown.
    explicit ControlWidget(QWidget* parent, Qt::WindowFlags flags = {});

    /// Called once, by the control that owns the widget.
    void attach(Control& control);
    [[nodiscard]] Control& control() const { return *control_; }

    /// Shows a new tooltip text at once where the old one is on the screen.
    void refreshToolTip();

    /// Runs when the window system asks the window to close; the window itself stays.
    std::function<void()> CloseRequested;
    /// Runs when the window has lost the keyboard to another one, or a box has been put before it.
    std::function<void()> Deactivated;
    /// Runs when the window comes into sight, and when it goes: hidden, or minimised.
    std::function<void(bool)> SightChanged;
    /// Runs at a press of a key that the forms know, with its number.
    std::function<void(std::int16_t)> KeyPressed;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void takePress(const QMouseEvent& event);
    void takeRelease(const QMouseEvent& event);
    void showToolTip(const QPoint& globalPosition);

    Control* control_ = nullptr;
    Qt::MouseButtons captured_; ///< buttons whose press this control got
};

} // namespace zvonivec
