// Moves a window with the pointer.
#pragma once

#include <QObject>
#include <QPointF>
#include <QTimer>
#include <optional>

class QWidget;
class QMouseEvent;

namespace zvonivec {

/// Keeps the pressed point of a window under the pointer until all buttons are released, and then
/// deletes itself. Started in the handler of a press. User-interface thread.
///
/// A window manager could move the window too, but the program would not get the release, and the
/// release of the right button opens the menu. So the window manager moves the window only where it
/// refuses the program's own requests. The release is then posted to the window when the pointer's
/// buttons are up. Under Wayland the compositor moves the window as soon as the pointer moves.
class WindowMover : public QObject {
public:
    /// Takes the window's place at the press. Does nothing when another button has already begun a
    /// move.
    static void start(QWidget& window, QPointF from);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    WindowMover(QWidget& window, QPointF from);
    void follow(const QMouseEvent& event);
    /// Hands the move over when the window manager doesn't move the window as asked.
    void checkPlace();
    void checkRelease();
    void end();

    QWidget& window_; ///< the parent
    QPointF from_;    ///< place of the window at the press
    QPointF asked_;   ///< place that the window manager was last asked for
    /// Place of the pointer at the press, as the system reports it.
    std::optional<QPointF> pressedAt_;
    bool pressIsSure_ = false; ///< the first event has confirmed or corrected it
    QTimer timer_;
    QPointF seen_;         ///< place of the window when it was last checked
    int timesUnmoved_ = 0; ///< checks since the window has moved
    unsigned reports_ = 0; ///< number of the window manager's reports then
};

} // namespace zvonivec
