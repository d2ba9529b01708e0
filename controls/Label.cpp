#include "controls/Label.h"

#include "controls/private/caption_text.h"
#include "controls/private/control_widget.h"
#include "controls/private/font.h"

#include <QAccessible>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <utility>

namespace zvonivec {

namespace {

constexpr int MINIMUM_WIDTH = 3;

Qt::Alignment flagOf(Alignment alignment) {
    switch (alignment) {
    case Alignment::right:
        return Qt::AlignRight;
    case Alignment::centre:
        return Qt::AlignHCenter;
    case Alignment::left:
        break;
    }
    return Qt::AlignLeft;
}

/// Returns a text's shadow without the pixels that lie left of or above a stroke of the text. With
/// them, the narrow gaps within and between letters of few pixels would fill up. The text lies a
/// pixel left of and above its shadow.
QImage besideStrokes(const QImage& shadow) {
    QImage result = shadow;
    const auto coverage = [&shadow](int x, int y) {
        return x < shadow.width() && y < shadow.height() ? qAlpha(shadow.pixel(x, y)) : 0;
    };
    for (int y = 0; y < shadow.height(); ++y) {
        for (int x = 0; x < shadow.width(); ++x) {
            const int stroke = std::max(coverage(x + 2, y + 1), coverage(x + 1, y + 2));
            const QRgb whole = shadow.pixel(x, y);
            const auto part = [stroke](int value) { return value * (255 - stroke) / 255; };
            result.setPixel(x, y,
                            qRgba(part(qRed(whole)), part(qGreen(whole)), part(qBlue(whole)),
                                  part(qAlpha(whole))));
        }
    }
    return result;
}

} // namespace

Label::Label(Control& container, std::string name) : Control(container, std::move(name)) {}

void Label::setCaption(const std::string& text) {
    if (text == caption_) {
        return;
    }
    caption_ = text;
    fit();
    repaint();
    if (accessibleName().empty()) {
        announceName();
    }
}

void Label::fit() {
    if (!autoSize_) {
        return;
    }
    const QFontMetrics metrics(formFont(bold_));
    const QString shown = CaptionText::of(QString::fromStdString(caption_)).text;
    const float width = toTwips(std::max(MINIMUM_WIDTH, metrics.horizontalAdvance(shown)));
    const float right = Left() + Width();
    setSize(width, Height());
    if (alignment_ == Alignment::right) {
        setLeft(right - width);
    }
}

void Label::lay(const ControlLayout& row) {
    bold_ = row.Bold;
    autoSize_ = row.AutoSize;
    transparent_ = row.Transparent;
    alignment_ = row.Alignment;
    Control::lay(row);
    setCaption(std::string(row.Caption));
}

void Label::setAvailable(bool on) {
    if (on == available_) {
        return;
    }
    available_ = on;
    if (QAccessible::isActive()) {
        QAccessible::State changed;
        changed.disabled = true;
        QAccessibleStateChangeEvent event(&widget(), changed);
        QAccessible::updateAccessibility(&event);
    }
}

void Label::press() {
    Control::press();
    if (Enabled()) {
        clicked(LEFT_BUTTON);
    }
}

void Label::clicked(std::int16_t button) {
    if (Click && (button == LEFT_BUTTON || button == RIGHT_BUTTON)) {
        Click();
    }
}

AccessibleTraits Label::accessibleTraits() const {
    using Role = AccessibleTraits::Role;
    if (shadow_) {
        return {.role = Role::decoration};
    }
    const QString shown = CaptionText::of(QString::fromStdString(caption_)).text.trimmed();
    const bool isItem = static_cast<bool>(Click);
    if (isItem && shown.count(u'-') == shown.size()) {
        return {.role = Role::separator, .available = false};
    }
    const bool isNamed = !accessibleName().empty();
    return {.role = isItem ? Role::menuItem : Role::text,
            .name = isNamed ? accessibleName() : shown.toStdString(),
            .content = isNamed ? shown.toStdString() : std::string(),
            .available = available_,
            .pressable = isItem && available_};
}

void Label::paint(QPainter& painter) {
    if (!transparent_) {
        painter.fillRect(painter.window(), toQColour(BackColor()));
    }
    const auto draw = [this](QPainter& on) {
        on.setFont(formFont(bold_));
        on.setPen(toQColour(ForeColor()));
        CaptionText::of(QString::fromStdString(caption_)).draw(on, on.window(), flagOf(alignment_));
    };
    if (!shadow_ || widget().devicePixelRatioF() != 1) {
        draw(painter);
        return;
    }
    QImage shadow(widget().size(), QImage::Format_ARGB32_Premultiplied);
    shadow.fill(Qt::transparent);
    QPainter onShadow(&shadow);
    draw(onShadow);
    onShadow.end();
    painter.drawImage(0, 0, besideStrokes(shadow));
}

} // namespace zvonivec
