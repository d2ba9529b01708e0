#include "skin/drawing/image.h"

namespace zvonivec::skin {

void paste(Picture& onto, const Picture& picture, int left, int top) {
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.at(x, y).a != 0) {
                onto.at(left + x, top + y) = picture.at(x, y);
            }
        }
    }
}

Picture enlarged(const Picture& picture, int factor) {
    Picture result(picture.width() * factor, picture.height() * factor);
    for (int y = 0; y < result.height(); ++y) {
        for (int x = 0; x < result.width(); ++x) {
            result.at(x, y) = picture.at(x / factor, y / factor);
        }
    }
    return result;
}

} // namespace zvonivec::skin
