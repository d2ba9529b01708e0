#include "controls/private/control_widget.h"

#include <QCloseEvent>
#include <QCursor>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTextDocument>
#include <QToolTip>

namespace zvonivec {

namespace {

std::int16_t toButtons(Qt::MouseButtons buttons) {
    return static_cast<std::int16_t>((buttons.testFlag(Qt::LeftButton) ? LEFT_BUTTON : 0) |
                                     (buttons.testFlag(Qt::RightButton) ? RIGHT_BUTTON : 0) |
                                     (buttons.testFlag(Qt::MiddleButton) ? MIDDLE_BUTTON : 0));
}

std::int16_t toShift(Qt::KeyboardModifiers modifiers) {
    return static_cast<std::int16_t>((modifiers.testFlag(Qt::ShiftModifier) ? 1 : 0) |
                                     (modifiers.testFlag(Qt::ControlModifier) ? 2 : 0) |
                                     (modifiers.testFlag(Qt::AltModifier) ? 4 : 0));
}

MouseArgs toArgs(const QMouseEvent& event, Qt::MouseButtons buttons) {
    const auto twips = [](double pixels) { return static_cast<float>(pixels) * TWIPS_PER_PIXEL; };
    return {.Button = toButtons(buttons),
            .Shift = toShift(event.modifiers()),
            .X = twips(event.position().x()),
            .Y = twips(event.position().y())};
}

void call(const Control::MouseHandler& handler, const MouseArgs& args) {
    if (handler) {
        handler(args);
    }
}

/// Returns a text that QToolTip shows as plain text. QToolTip guesses from a text whether it is
/// HTML.
QString asPlainToolTip(const std::string& text) {
    const QString plain = QString::fromStdString(text);
    return Qt::mightBeRichText(plain) ? Qt::convertFromPlainText(plain, Qt::WhiteSpaceNormal)
                                      : plain;
}

} // namespace

ControlWidget::ControlWidget(QWidget* parent, Qt::WindowFlags flags) : QWidget(parent, flags) {
    setMouseTracking(true);
    setAttribute(Qt::WA_NoMousePropagation);
    lower();
}

void ControlWidget::attach(Control& control) {
    control_ = &control;
    setObjectName(QString::fromStdString(control.Name()));
}

bool ControlWidget::event(QEvent* event) {
    // Handles pointer events before QWidget, which would drop the release of a captured press if
    // the widget has been disabled since.
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        takePress(*static_cast<QMouseEvent*>(event));
        return true;
    case QEvent::MouseButtonRelease:
        takeRelease(*static_cast<QMouseEvent*>(event));
        return true;
    case QEvent::MouseMove:
        if (control_->Enabled()) {
            const auto& move = *static_cast<QMouseEvent*>(event);
            call(control_->MouseMove, toArgs(move, move.buttons()));
        }
        return true;
    case QEvent::ToolTip:
        showToolTip(static_cast<QHelpEvent*>(event)->globalPos());
        return true;
    case QEvent::WindowDeactivate:
    case QEvent::WindowBlocked: // blocked by a box or dialog, which takes the keyboard where it can
        if (Deactivated) {
            Deactivated();
        }
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void ControlWidget::takePress(const QMouseEvent& event) {
    if (!control_->Enabled()) {
        return;
    }
    captured_ |= event.button();
    call(control_->MouseDown, toArgs(event, event.button()));
}

void ControlWidget::takeRelease(const QMouseEvent& event) {
    if (!captured_.testFlag(event.button())) {
        return;
    }
    captured_ &= ~Qt::MouseButtons(event.button());
    call(control_->MouseUp, toArgs(event, event.button()));
    if (control_->Enabled() && rect().contains(event.position().toPoint())) {
        control_->clicked(toButtons(event.button()));
    }
}

void ControlWidget::showToolTip(const QPoint& globalPosition) {
    if (!control_->Enabled() || control_->ToolTipText().empty()) {
        QToolTip::hideText();
        return;
    }
    QToolTip::showText(globalPosition, asPlainToolTip(control_->ToolTipText()), this);
}

void ControlWidget::refreshToolTip() {
    if (QToolTip::isVisible() && underMouse()) {
        showToolTip(QCursor::pos());
    }
}

void ControlWidget::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    control_->paint(painter);
}

void ControlWidget::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (SightChanged) {
        SightChanged(true);
    }
}

void ControlWidget::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (SightChanged) {
        SightChanged(false);
    }
}

void ControlWidget::keyPressEvent(QKeyEvent* event) {
    if (KeyPressed && event->key() == Qt::Key_Escape) {
        KeyPressed(vbKeyEscape);
    } else {
        QWidget::keyPressEvent(event);
    }
}

void ControlWidget::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (CloseRequested) {
        CloseRequested();
    }
}

} // namespace zvonivec
