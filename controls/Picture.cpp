#include "controls/Picture.h"

#include "controls/private/picture_data.h"
#include "skin/pictures.h"

#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <algorithm>
#include <array>

namespace zvonivec {

namespace {

QString textOf(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString pathOf(const QString& name) {
    return QStringLiteral(":/skin/") + name;
}

/// Returns a picture cut from the sheet of a scale, or a null pixmap when the picture isn't on the
/// sheet.
QPixmap fromSheet(const QString& name, const skin::SharpPictures& sharp) {
    static std::array<QImage, skin::SHARP_PICTURES.size()> sheets;
    const auto place = std::ranges::find_if(skin::SHEET_PLACES, [&](const skin::SheetPlace& on) {
        return textOf(on.picture.file) == name;
    });
    if (place == skin::SHEET_PLACES.end()) {
        return {};
    }
    QImage& sheet = sheets.at(static_cast<std::size_t>(&sharp - skin::SHARP_PICTURES.data()));
    if (sheet.isNull()) {
        sheet = QImage(pathOf(textOf(sharp.sheet)));
    }
    return QPixmap::fromImage(sheet.copy(place->left * sharp.scale, place->top * sharp.scale,
                                         place->picture.width * sharp.scale,
                                         place->picture.height * sharp.scale));
}

QPixmap read(const PictureData& picture, double ratio) {
    if (ratio > 1) {
        const auto next =
            std::ranges::find_if(skin::SHARP_PICTURES, [ratio](const skin::SharpPictures& sharp) {
                return sharp.scale >= ratio;
            });
        const skin::SharpPictures& sharp =
            next != skin::SHARP_PICTURES.end() ? *next : skin::SHARP_PICTURES.back();
        QPixmap pixmap = picture.name == textOf(skin::BODY_PICTURE.file)
                             ? QPixmap(pathOf(textOf(sharp.body)))
                             : fromSheet(picture.name, sharp);
        if (!pixmap.isNull()) {
            // Scaled once here instead of at every paint.
            if (ratio < sharp.scale) {
                pixmap = pixmap.scaled((QSizeF(picture.size) * ratio).toSize(),
                                       Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            }
            pixmap.setDevicePixelRatio(std::min<double>(ratio, sharp.scale));
            return pixmap;
        }
    }
    return {pathOf(picture.name)};
}

} // namespace

Picture::Picture(std::string_view name) {
    // Reads only the size. Most pictures are never shown in a run.
    const QSize size = QImageReader(pathOf(textOf(name))).size();
    if (!size.isEmpty()) {
        data_ = std::make_shared<const PictureData>(
            PictureData{.name = textOf(name), .size = size, .pixmap = {}});
    }
}

const PictureData* dataOf(const Picture& picture) {
    return picture.data_.get();
}

QPixmap pixmapOf(const Picture& picture, double ratio) {
    const PictureData* data = dataOf(picture);
    if (data == nullptr) {
        return {};
    }
    if (data->ratio != ratio) {
        data->pixmap = read(*data, ratio);
        data->ratio = ratio;
    }
    return data->pixmap;
}

bool isRound(const Picture& picture) {
    const QSize size(picture.width(), picture.height());
    if (size.width() != size.height() || size.isEmpty()) {
        return false;
    }
    const QImage image = pixmapOf(picture, std::max(1.0, dataOf(picture)->ratio)).toImage();
    const int inCorner = image.width() / 8; // within a square's rounded corner, but not a disc's
    return qAlpha(image.pixel(inCorner, inCorner)) == 0;
}

void drawPicture(QPainter& painter, const Picture& picture) {
    const double ratio = painter.deviceTransform().m11();
    const QPixmap pixmap = pixmapOf(picture, ratio);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, pixmap.devicePixelRatio() != ratio);
    painter.drawPixmap(0, 0, pixmap);
}

int Picture::width() const {
    return data_ != nullptr ? data_->size.width() : 0;
}

int Picture::height() const {
    return data_ != nullptr ? data_->size.height() : 0;
}

Picture ImageList::ListImage(std::size_t number) const {
    return number >= 1 && number <= pictures_.size() ? pictures_[number - 1] : Picture();
}

} // namespace zvonivec
