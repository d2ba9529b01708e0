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
    /// Refused unless above Min. A Value that would lie beyond it goes to it.
    void setMax(float max);
    /// Refused outside Min to Max.
    void setValue(float value);

    /// The pointer's picture while it is over the bar; the hot spot is in
    /// logical pixels.
    void setMouseIcon(const Picture& picture, int hotX, int hotY);

    [[nodiscard]] AccessibleTraits accessibleTraits() const override;

private:
    struct Tracks;

    void paint(QPainter& painter) override;
    /// How many of the screen's pixels are lit.
    [[nodiscard]] int litWidth() const;

    float min_ = 0;
    float max_ = 100;
    float value_ = 0;
    std::unique_ptr<Tracks> tracks_; ///< for the screen that it was last painted on
};

} // namespace zvonivec
