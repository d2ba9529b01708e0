// The Qt side of a picture.
#pragma once

#include "controls/Picture.h"

#include <QPixmap>
#include <QSize>
#include <QString>

class QPainter;

namespace zvonivec {

struct PictureData {
    QString name;
    QSize size; ///< logical pixels
    /// The picture as it was last asked for, and for how many screen pixels to a logical one. Other
    /// resolutions are never read.
    mutable QPixmap pixmap;
    mutable double ratio = 0;
};

/// The picture for a screen with so many pixels to a logical one, from the drawing of the next
/// resolution; a null pixmap where there is no picture.
[[nodiscard]] QPixmap pixmapOf(const Picture& picture, double ratio = 1);

/// Paints it in the upper left corner, as sharp as the painter's screen is.
void drawPicture(QPainter& painter, const Picture& picture);

} // namespace zvonivec
