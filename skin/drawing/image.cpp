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

} // namespace zvonivec::skin
