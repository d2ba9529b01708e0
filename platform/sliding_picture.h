// A picture that the display server slides through a pane of a window by itself.
#pragma once

#include <memory>

class QColor;
class QImage;
class QPoint;
class QWidget;

namespace zvonivec {

/// The server has the picture once; a step is a message of a few bytes to it, and nothing is
/// painted by the program. What the server uncovers it fills by itself.
///
/// The picture lies above all that the program paints in the pane, and takes no part in the
/// pointer's events. User-interface thread. The pane must outlive it.
class SlidingPicture {
public:
    /// For a pane, a widget within a window that has been shown; null where the display has no such
    /// means.
    static std::unique_ptr<SlidingPicture> in(QWidget& pane);

    SlidingPicture() = default;
    SlidingPicture(const SlidingPicture&) = delete;
    SlidingPicture& operator=(const SlidingPicture&) = delete;
    virtual ~SlidingPicture() = default;

    /// Takes a picture, in the screen's pixels, and the colour of the pane where the picture isn't.
    /// False when the picture is too large for the server: what was there is gone.
    virtual bool setPicture(const QImage& picture, const QColor& ground) = 0;

    /// Puts the picture's corner to a place, in the screen's pixels from the pane's corner.
    virtual void moveTo(const QPoint& place) = 0;
};

} // namespace zvonivec
