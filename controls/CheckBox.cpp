#include "controls/CheckBox.h"

#include "controls/private/caption_text.h"
#include "controls/private/control_widget.h"
#include "controls/private/font.h"

#include <QAccessible>
#include <QPainter>
#include <utility>

namespace zvonivec {

namespace {

constexpr int BOX_SIZE = 13;
constexpr int CAPTION_GAP = 4;

} // namespace

CheckBox::CheckBox(Control& container, std::string name) : Control(container, std::move(name)) {}

void CheckBox::setValue(std::int32_t value) {
    if (value < 0 || value > 2 || value == value_) {
        return;
    }
    value_ = static_cast<std::int16_t>(value);
    repaint();
    if (QAccessible::isActive()) {
        QAccessible::State changed;
        changed.checked = true;
        QAccessibleStateChangeEvent event(&widget(), changed);
        QAccessible::updateAccessibility(&event);
    }
    if (Click) {
        Click();
    }
}

void CheckBox::press() {
    if (Enabled()) {
        setValue(value_ == 0 ? 1 : 0);
    }
}

void CheckBox::clicked(std::int16_t button) {
    if (button == LEFT_BUTTON) {
        press();
    }
}

void CheckBox::lay(const ControlLayout& row) {
    Control::lay(row);
    caption_ = row.Caption;
    bold_ = row.Bold;
    repaint();
}

AccessibleTraits CheckBox::accessibleTraits() const {
    constexpr AccessibleTraits::Check checks[] = {AccessibleTraits::Check::off,
                                                  AccessibleTraits::Check::on,
                                                  AccessibleTraits::Check::undecided};
    return {.role = AccessibleTraits::Role::checkBox,
            .name = CaptionText::of(QString::fromStdString(caption_)).text.toStdString(),
            .pressable = true,
            .check = checks[value_]};
}

void CheckBox::paint(QPainter& painter) {
    const QRect all = painter.window();
    painter.fillRect(all, toQColour(BackColor()));

    const QRect box(0, (all.height() - BOX_SIZE) / 2, BOX_SIZE, BOX_SIZE);
    painter.fillRect(box, toQColour(ForeColor()));
    painter.fillRect(box.adjusted(1, 1, -1, -1), QColor(6, 26, 32));
    if (value_ != 0) {
        QPen mark(toQColour(ForeColor()), 2);
        mark.setCapStyle(Qt::SquareCap);
        painter.setPen(mark);
        painter.setRenderHint(QPainter::Antialiasing);
        const QPointF corner = box.topLeft();
        const QPointF points[] = {corner + QPointF(3.5, 6.5), corner + QPointF(5.5, 8.8),
                                  corner + QPointF(9.5, 3.8)};
        painter.setOpacity(value_ == 2 ? 0.5 : 1.0);
        painter.drawPolyline(points, 3);
        painter.setOpacity(1.0);
    }

    painter.setFont(formFont(bold_));
    painter.setPen(toQColour(ForeColor()));
    CaptionText::of(QString::fromStdString(caption_))
        .draw(painter, all.adjusted(BOX_SIZE + CAPTION_GAP, 0, 0, 0), Qt::AlignLeft);
}

} // namespace zvonivec
