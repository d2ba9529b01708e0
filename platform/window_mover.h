// Moves a window with the pointer.
#pragma once

#include <QObject>
#include <QPoint>
#include <QPointF>
#include <optional>

class QWidget;
class QMouseEvent;

namespace zvonivec {

/// Keeps the pressed point of a window under the pointer until all buttons are released, and then
/// deletes itself. Started in the handler of a press. User-interface thread.
///
/// An X11 window manager could move the window too, but the program would not get the release. The
/// release of the right button opens the menu.
class WindowMover : public QObject {
public:
    /// Does nothing when another button has already begun a move.
    static void start(QWidget& window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit WindowMover(QWidget& window);
    void follow(const QMouseEvent& event);
    void end();

    QWidget& window_; ///< the parent
    QPoint from_;     ///< place of the window at the press
    std::optional<QPointF>
        pressedAt_; ///< place of the pointer at the press, known from the first event on
};

} // namespace zvonivec
