// The Qt side of a picture.
#pragma once

#include "controls/Picture.h"

#include <QPixmap>

namespace zvonivec {

struct PictureData {
    QPixmap pixmap;
};

/// A null pixmap where there is no picture.
[[nodiscard]] QPixmap pixmapOf(const Picture& picture);

} // namespace zvonivec
