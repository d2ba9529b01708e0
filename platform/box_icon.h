// The pictures of message boxes.
#pragma once

#include <QWidget>

namespace zvonivec {

/// A round button of the skin's display colour with an "i" on it, or a red one with a cross. It is
/// painted in the screen's own pixels, so that it is sharp at every scale.
class BoxIcon : public QWidget {
public:
    enum class Kind { information, critical };
    explicit BoxIcon(Kind kind);
    [[nodiscard]] Kind kind() const { return kind_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Kind kind_;
};

} // namespace zvonivec
