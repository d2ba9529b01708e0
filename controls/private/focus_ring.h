// The ring around the control that has the keyboard focus.
#pragma once

#include <QWidget>

namespace zvonivec {

/// Lies above all controls of a window and lets the pointer through.
class FocusRing : public QWidget {
public:
    /// Creates a hidden ring.
    explicit FocusRing(QWidget& window);

    /// Shows the ring around a place in the window. The radius is that of the place's corners.
    void surround(const QRect& place, double radius);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double radius_ = 0;
};

} // namespace zvonivec
