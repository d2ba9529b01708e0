#include "controls/Picture.h"

#include "controls/picture_data.h"

namespace zvonivec {

Picture::Picture(std::string_view name) {
    const QPixmap pixmap(QStringLiteral(":/skin/") +
                         QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
    if (!pixmap.isNull()) {
        data_ = std::make_shared<const PictureData>(PictureData{pixmap});
    }
}

const PictureData* dataOf(const Picture& picture) {
    return picture.data_.get();
}

QPixmap pixmapOf(const Picture& picture) {
    const PictureData* data = dataOf(picture);
    return data != nullptr ? data->pixmap : QPixmap();
}

int Picture::width() const {
    return data_ != nullptr ? data_->pixmap.deviceIndependentSize().toSize().width() : 0;
}

int Picture::height() const {
    return data_ != nullptr ? data_->pixmap.deviceIndependentSize().toSize().height() : 0;
}

Picture ImageList::ListImage(std::size_t number) const {
    return number >= 1 && number <= pictures_.size() ? pictures_[number - 1] : Picture();
}

} // namespace zvonivec
