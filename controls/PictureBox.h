// A plain coloured area that clips the controls in it.
//
// One that slides, in another one that is its pane, moves at every tick. Where the display server
// can, it moves a picture of the box and of what is in it: the toolkit is then not asked to paint,
// and its own widget stays where it was. Neither may be hidden by itself: the server's picture
// would stay.
#pragma once

#include "controls/Control.h"

namespace zvonivec {

class SlidingPicture;

class PictureBox : public Control {
public:
    PictureBox(Control& container, std::string name);
    ~PictureBox() override;

    void setLeft(float twips) override;
    void lay(const ControlLayout& row) override;
    [[nodiscard]] AccessibleTraits accessibleTraits() const override;

private:
    void paint(QPainter& painter) override;
    void contentChanged() override;
    bool slide();

    bool edge_ = false;
    bool slides_ = false;
    bool pictureIsOld_ = true;
    bool serverHasPicture_ = false;
    std::unique_ptr<SlidingPicture> sliding_;
    double ratio_ = 0; ///< screen pixels to a logical one, of the picture
};

} // namespace zvonivec
