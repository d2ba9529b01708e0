// The pixels of a picture.
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
    /// The picture in the resolution that was last asked for, in device pixels to a logical pixel.
    /// Other resolutions are never read.
    mutable QPixmap pixmap;
    mutable double ratio = 0;
};

/// Returns the picture for a screen with this number of device pixels to a logical pixel. It comes
/// from the drawing with the next higher resolution. Returns a null pixmap without a picture.
[[nodiscard]] QPixmap pixmapOf(const Picture& picture, double ratio = 1);

/// Returns whether a picture is a disc: square, with nothing in its corners.
[[nodiscard]] bool isRound(const Picture& picture);

/// Paints a picture in the painter's upper left corner, in the resolution of its device.
void drawPicture(QPainter& painter, const Picture& picture);

} // namespace zvonivec
