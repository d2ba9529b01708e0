// A picture that the display server moves within a pane of a window.
#pragma once

#include <memory>

class QColor;
class QImage;
class QPoint;
class QWidget;

namespace zvonivec {

/// A picture that is sent to the display server once. Moving it takes a message of a few bytes, and
/// the program paints nothing: the server also fills the area that the picture uncovers.
///
/// The picture covers everything that the program paints in the pane. It takes no pointer events.
/// User-interface thread. The pane must outlive this object.
class SlidingPicture {
public:
    /// Creates a picture in a pane, a widget of a window that has been shown. Returns null when the
    /// display can't move pictures.
    static std::unique_ptr<SlidingPicture> in(QWidget& pane);

    SlidingPicture() = default;
    SlidingPicture(const SlidingPicture&) = delete;
    SlidingPicture& operator=(const SlidingPicture&) = delete;
    virtual ~SlidingPicture() = default;

    /// Sets the picture, in device pixels, and the colour of the pane around it. Returns false when
    /// the picture is too large for the server. No picture is shown then.
    virtual bool setPicture(const QImage& picture, const QColor& ground) = 0;

    /// Moves the picture's upper left corner to a place, in device pixels from the pane's corner.
    virtual void moveTo(const QPoint& place) = 0;
};

} // namespace zvonivec
