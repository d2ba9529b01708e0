#include "controls/SlidingBox.h"

#include "controls/private/control_widget.h"
#include "platform/sliding_picture.h"

#include <QImage>
#include <QWindow>
#include <cmath>
#include <utility>

namespace zvonivec {

SlidingBox::SlidingBox(Control& container, std::string name)
    : PictureBox(container, std::move(name)) {}

SlidingBox::~SlidingBox() = default;

void SlidingBox::setLeft(float twips) {
    if (std::isfinite(twips)) {
        setPlace(twips, Top());
        if (!slide()) {
            place();
        }
    }
}

bool SlidingBox::slide() {
    const QWidget& window = *widget().window();
    if (window.windowHandle() == nullptr || !window.windowHandle()->isExposed()) {
        return sliding_ != nullptr; // the next step after the window is seen shows the place
    }
    const double ratio = window.devicePixelRatioF();
    if (ratio != ratio_) { // asked only once: a display's abilities don't change
        sliding_ = SlidingPicture::in(*widget().parentWidget());
        ratio_ = ratio;
        pictureIsOld_ = true;
    }
    if (sliding_ == nullptr) {
        return false;
    }
    if (pictureIsOld_) {
        QImage picture(widget().size() * ratio, QImage::Format_RGB32);
        picture.setDevicePixelRatio(ratio);
        widget().render(&picture);
        pictureIsOld_ = false;
        serverHasPicture_ = sliding_->setPicture(picture, toQColour(container()->BackColor()));
    }
    if (!serverHasPicture_) {
        return false;
    }
    const auto pixels = [ratio](float twips) {
        return static_cast<int>(std::lround(toPixels(twips) * ratio));
    };
    sliding_->moveTo({pixels(Left()), pixels(Top())});
    return true;
}

void SlidingBox::contentChanged() {
    pictureIsOld_ = true;
}

} // namespace zvonivec
