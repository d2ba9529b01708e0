#include "controls/private/control_widget.h"

#include "controls/private/focus_ring.h"
#include "platform/file_names.h"

#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QDropEvent>
#include <QHelpEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QTextDocument>
#include <QToolTip>
#include <QUrl>
#include <QWheelEvent>
#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

namespace zvonivec {

namespace {

std::int16_t toButtons(Qt::MouseButtons buttons) {
    return static_cast<std::int16_t>((buttons.testFlag(Qt::LeftButton) ? LEFT_BUTTON : 0) |
                                     (buttons.testFlag(Qt::RightButton) ? RIGHT_BUTTON : 0) |
                                     (buttons.testFlag(Qt::MiddleButton) ? MIDDLE_BUTTON : 0));
}

std::int16_t toShift(Qt::KeyboardModifiers modifiers) {
    return static_cast<std::int16_t>((modifiers.testFlag(Qt::ShiftModifier) ? SHIFT_KEY : 0) |
                                     (modifiers.testFlag(Qt::ControlModifier) ? CONTROL_KEY : 0) |
                                     (modifiers.testFlag(Qt::AltModifier) ? ALT_KEY : 0));
}

std::int16_t toKeyCode(int key) {
    if (key >= Qt::Key_A && key <= Qt::Key_Z) {
        return static_cast<std::int16_t>(key); // as Windows numbers them
    }
    switch (key) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return vbKeyTab;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return vbKeyReturn;
    case Qt::Key_Escape:
        return vbKeyEscape;
    case Qt::Key_Space:
        return vbKeySpace;
    case Qt::Key_PageUp:
        return vbKeyPageUp;
    case Qt::Key_PageDown:
        return vbKeyPageDown;
    case Qt::Key_End:
        return vbKeyEnd;
    case Qt::Key_Home:
        return vbKeyHome;
    case Qt::Key_Left:
        return vbKeyLeft;
    case Qt::Key_Up:
        return vbKeyUp;
    case Qt::Key_Right:
        return vbKeyRight;
    case Qt::Key_Down:
        return vbKeyDown;
    case Qt::Key_Menu:
        return vbKeyMenu;
    case Qt::Key_F1:
        return vbKeyF1;
    case Qt::Key_F10:
        return vbKeyF10;
    default:
        return 0;
    }
}

KeyArgs toKeyArgs(const QKeyEvent& event) {
    const bool forDesktop = event.modifiers().testFlag(Qt::MetaModifier);
    return {.KeyCode = forDesktop ? std::int16_t{0} : toKeyCode(event.key()),
            .Shift = toShift(event.modifiers()),
            .Repeated = event.isAutoRepeat(),
            .Letter = firstLetter(event.text().toStdString())};
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

/// Returns the path of the file that is dragged, if it is one file of this machine.
std::optional<std::string> onlyLocalFile(const QMimeData& data) {
    const QList<QUrl> urls = data.urls();
    return urls.size() == 1 ? localPath(urls.front()) : std::nullopt;
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
    case QEvent::Wheel:
        takeWheel(*static_cast<QWheelEvent*>(event));
        return true;
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        takeDrag(*static_cast<QDropEvent*>(event), event->type() == QEvent::Drop);
        return true;
    case QEvent::KeyPress:
        return takeKey(*static_cast<QKeyEvent*>(event)) || QWidget::event(event);
    case QEvent::Move:
        if (Moved) {
            Moved();
        }
        break;
    case QEvent::FocusIn:
    case QEvent::FocusOut: {
        auto* form = static_cast<ControlWidget*>(window());
        const auto reason = static_cast<QFocusEvent*>(event)->reason();
        if (event->type() == QEvent::FocusIn && form != this && form->focusRing_ == nullptr &&
            reason == Qt::ActiveWindowFocusReason) {
            form->setFocus(); // Windows activates the window before it knows that it has the focus
        } else {
            form->showFocus();
        }
        break;
    }
    case QEvent::ToolTip:
        showToolTip(static_cast<QHelpEvent*>(event)->globalPos());
        return true;
    case QEvent::WindowBlocked: // by a box or dialog, which takes pointer and keyboard
        cancelPresses();
        [[fallthrough]];
    case QEvent::WindowDeactivate:
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
    if (!control_->Enabled() || toButtons(event.button()) == 0) {
        return; // the thumb buttons of a mouse do nothing
    }
    if (windowType() == Qt::Popup && !rect().contains(event.position().toPoint())) {
        close(); // a popup of the window system gets the presses beside it
        return;
    }
    captured_ |= event.button();
    auto* form = static_cast<ControlWidget*>(window());
    if (form->focusRing_ != nullptr) {
        form->setFocus(); // who uses the pointer sees no ring
    }
    if (form->Pressed) {
        form->Pressed();
    }
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

void ControlWidget::takeWheel(QWheelEvent& event) {
    constexpr int notch = 120;
    event.accept();
    ControlWidget* receiver = this;
    while (!receiver->control_->MouseWheel && !receiver->isWindow()) {
        receiver = static_cast<ControlWidget*>(receiver->parentWidget());
    }
    if (!receiver->control_->MouseWheel) {
        return;
    }
    const int turned = event.angleDelta().y();
    const bool turnsBack = turned > 0 ? receiver->wheelTurned_ < 0 : receiver->wheelTurned_ > 0;
    receiver->wheelTurned_ = turned + (turnsBack ? 0 : receiver->wheelTurned_);
    const int notches = receiver->wheelTurned_ / notch;
    receiver->wheelTurned_ %= notch;
    if (notches != 0) {
        receiver->control_->MouseWheel(notches);
    }
}

void ControlWidget::takeDrag(QDropEvent& event, bool isDropped) {
    const std::optional<std::string> file = onlyLocalFile(*event.mimeData());
    if (!FileDropped || !file || QApplication::activeModalWidget() != nullptr) {
        event.ignore();
        return;
    }
    // The file stays where it is, whatever the other program would rather do.
    event.setDropAction(Qt::CopyAction);
    event.accept();
    if (isDropped) {
        // Posted, because the other program waits for this event's end, and a box may be shown.
        QMetaObject::invokeMethod(
            this, [this, path = *file] { FileDropped(path); }, Qt::QueuedConnection);
    }
}

bool ControlWidget::takeKey(QKeyEvent& event) {
    if (!isWindow()) {
        event.ignore(); // the toolkit passes it on to the window
        return true;
    }
    return KeyPressed && KeyPressed(toKeyArgs(event));
}

bool ControlWidget::focusNextPrevChild(bool next) {
    if (!isWindow()) {
        return QWidget::focusNextPrevChild(next); // which asks the window
    }
    const auto count = static_cast<std::ptrdiff_t>(TabOrder.size());
    const auto found = std::ranges::find(TabOrder, focusWidget());
    std::ptrdiff_t place = found - TabOrder.begin();
    if (found == TabOrder.end() && next) {
        place = -1;
    }
    for (std::ptrdiff_t step = 1; step <= count; ++step) {
        const std::ptrdiff_t at = (place + (next ? step : count - step)) % count;
        QWidget* widget = TabOrder[static_cast<std::size_t>(at)];
        if (widget->isEnabled() && widget->isVisible()) {
            widget->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            return true;
        }
    }
    return false;
}

void ControlWidget::showFocus() {
    const auto* focused = dynamic_cast<ControlWidget*>(QApplication::focusWidget());
    const bool here = focused != nullptr && focused != this && focused->window() == this;
    if (here) {
        if (focusRing_ == nullptr) {
            focusRing_ = new FocusRing(*this);
        }
        focusRing_->surround(QRect(focused->mapTo(this, QPoint(0, 0)), focused->size()),
                             focused->control().cornerRadius());
    } else if (focusRing_ != nullptr) {
        focusRing_->hide();
    }
}

void ControlWidget::cancelPresses() {
    const auto cancel = [](ControlWidget& widget) {
        if (std::exchange(widget.captured_, Qt::NoButton) != Qt::NoButton &&
            widget.control_->PressCancelled) {
            widget.control_->PressCancelled();
        }
    };
    cancel(*this);
    for (QWidget* child : findChildren<QWidget*>()) {
        if (auto* widget = dynamic_cast<ControlWidget*>(child)) {
            cancel(*widget);
        }
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

void ControlWidget::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (CloseRequested) {
        CloseRequested();
    }
}

} // namespace zvonivec
