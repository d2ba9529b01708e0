// A bar that fills from the left.
#pragma once

#include "controls/Control.h"
#include "controls/Picture.h"

namespace zvonivec {

class ProgressBar : public Control {
public:
    ProgressBar(Control& container, std::string name);
    ~ProgressBar() override;

    [[nodiscard]] float Min() const { return min_; }
    [[nodiscard]] float Max() const { return max_; }
    [[nodiscard]] float Value() const { return value_; }
    /// Refused unless greater than Min. Reduces Value to the new maximum if it is greater.
    void setMax(float max);
    /// Refused if less than Min or greater than Max.
    void setValue(float value);

    /// Sets the pointer's picture over the bar. The hot spot is in logical pixels.
    void setMouseIcon(const Picture& picture, int hotX, int hotY);

    [[nodiscard]] AccessibleTraits accessibleTraits() const override;

private:
    struct Tracks;

    void paint(QPainter& painter) override;
    /// Returns the width of the lit part, in device pixels.
    [[nodiscard]] int litWidth() const;

    float min_ = 0;
    float max_ = 100;
    float value_ = 0;
    std::unique_ptr<Tracks> tracks_; ///< for the screen of the last paint
};

} // namespace zvonivec
