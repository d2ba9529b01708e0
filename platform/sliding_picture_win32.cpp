#include "platform/sliding_picture.h"

namespace zvonivec {

std::unique_ptr<SlidingPicture> SlidingPicture::in(QWidget& /*pane*/) {
    return nullptr;
}

} // namespace zvonivec
