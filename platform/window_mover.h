// Takes a window along with the pointer.
#pragma once

#include <QObject>
#include <QPoint>
#include <QPointF>
#include <optional>

class QWidget;
class QMouseEvent;

namespace zvonivec {

/// Begun in the handler of a press, it keeps the pressed point of the window under the pointer
/// until all buttons are up, and then goes. User-interface thread.
///
/// An X11 window manager could do the same, but it would keep the release for itself, and the
/// release of the right button opens the menu.
class WindowMover : public QObject {
public:
    /// Does nothing while a window is on its way already, for a second button.
    static void start(QWidget& window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit WindowMover(QWidget& window);
    void follow(const QMouseEvent& event);
    void end();

    QWidget& window_;                  ///< the parent
    QPoint from_;                      ///< where the window was at the press
    std::optional<QPointF> pressedAt_; ///< and the pointer, known from the first event on
};

} // namespace zvonivec
