// A picture box that moves all the time within the box that contains it.
#pragma once

#include "controls/PictureBox.h"

namespace zvonivec {

class SlidingPicture;

/// Where the display server can move pictures, it moves a picture of this box and of the controls
/// in it. The toolkit then paints nothing, and the box's own widget stays in its old place.
///
/// Neither this box nor its container may be hidden alone: the server's picture would stay.
class SlidingBox : public PictureBox {
public:
    SlidingBox(Control& container, std::string name);
    ~SlidingBox() override;

    void setLeft(float twips) override;

private:
    void contentChanged() override;
    /// Returns false when the display server can't show or move the picture.
    bool slide();

    bool pictureIsOld_ = true;
    bool serverHasPicture_ = false;
    std::unique_ptr<SlidingPicture> sliding_;
    double ratio_ = 0; ///< device pixels to a logical pixel, in the server's picture
};

} // namespace zvonivec
