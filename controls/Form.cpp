#include "controls/Form.h"

#include "controls/Application.h"
#include "controls/private/control_widget.h"
#include "controls/private/picture_data.h"

#include <QAccessible>
#include <QApplication>
#include <QIcon>
#include <QPainter>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <utility>

namespace zvonivec {

namespace {

Qt::WindowFlags flagsOf(Form::Kind kind) {
    if (kind == Form::Kind::popup) {
        // A window manager would frame the popup or push it back onto the screen.
        return Qt::Tool | Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint;
    }
    // With these hints the window manager's menu and the taskbar can minimise and close a window
    // without a frame.
    return Qt::Window | Qt::FramelessWindowHint | Qt::WindowSystemMenuHint |
           Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint;
}

/// Returns the nearest place that a window can have. Window systems use 16-bit coordinates.
float nearestPlace(float twips) {
    constexpr float limit = 32000 * TWIPS_PER_PIXEL;
    return std::clamp(twips, -limit, limit);
}

bool isForm(const QWindow* window) {
    const auto all = QApplication::topLevelWidgets();
    return std::ranges::any_of(all, [window](QWidget* widget) {
        return widget->windowHandle() == window && window != nullptr &&
               dynamic_cast<ControlWidget*>(widget) != nullptr;
    });
}

} // namespace

Form::Form(std::string name, Kind kind, float width, float height)
    : Control(std::move(name), std::make_unique<ControlWidget>(nullptr, flagsOf(kind))),
      kind_(kind) {
    setSize(width, height);
    widget().setFixedSize(toPixels(width), toPixels(height));
    widget().setAttribute(Qt::WA_OpaquePaintEvent);
    widget().CloseRequested = [this] { Form_CloseRequest(); };
    widget().SightChanged = [this](bool seen) { Form_SightChanged(seen); };
    widget().KeyPressed = [this](const KeyArgs& key) { return Form_KeyDown(key); };
    widget().setFocus(); // otherwise the toolkit would give the focus to the first control
    if (kind == Kind::popup) {
        widget().setAttribute(Qt::WA_X11NetWmWindowTypePopupMenu);
        widget().Deactivated = [this] { deactivate(); };
        // Under X11 the popup never has the keyboard, so this watches whether the program's forms
        // lose it. A form may also get the keyboard late, when the popup is already shown.
        QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &widget(),
                         [this, had = false](QWindow* focused) mutable {
                             const bool has = isForm(focused);
                             if (had && !has) {
                                 deactivate();
                             }
                             had = has;
                         });
    }
    Control::setVisible(false);
    Application::formLoaded();
}

Form::~Form() {
    if (loaded_) {
        Application::formUnloaded();
    }
}

float Form::Left() const {
    return toTwips(widget().x());
}

float Form::Top() const {
    return toTwips(widget().y());
}

void Form::setLeft(float twips) {
    if (!std::isnan(twips)) {
        wantedPlace_.reset();
        widget().move(toPixels(nearestPlace(twips)), widget().y());
    }
}

void Form::setTop(float twips) {
    if (!std::isnan(twips)) {
        wantedPlace_.reset();
        widget().move(widget().x(), toPixels(nearestPlace(twips)));
    }
}

void Form::setVisible(bool on) {
    if (loaded_ || !on) {
        wantedPlace_ = on ? std::optional(Place{Left(), Top()}) : std::nullopt;
        timesShown_ += on ? 1 : 0;
        const bool changes = on != Visible();
        Control::setVisible(on);
        if (changes && kind_ == Kind::popup && QAccessible::isActive()) {
            QAccessibleEvent event(&widget(),
                                   on ? QAccessible::PopupMenuStart : QAccessible::PopupMenuEnd);
            QAccessible::updateAccessibility(&event);
        }
    }
}

void Form::askAgainForPlace() {
    const auto place = std::exchange(wantedPlace_, std::nullopt);
    if (!place || QGuiApplication::mouseButtons() != Qt::NoButton) {
        return; // the user is already moving the window
    }
    const QRect wanted(QPoint(toPixels(place->left), toPixels(place->top)), widget().size());
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (screen != nullptr && !screen->availableVirtualGeometry().contains(wanted)) {
        widget().move(wanted.topLeft());
    }
}

void Form::bringToFront() {
    widget().raise();
}

void Form::ComeForward() {
    if (loaded_) {
        if (WindowState() == WindowState::minimised) {
            widget().showNormal();
        }
        widget().raise();
        widget().activateWindow();
    }
}

void Form::takeDroppedFiles() {
    widget().setAcceptDrops(true);
    widget().FileDropped = [this](const std::string& path) { Form_FileDropped(path); };
}

void Form::deactivate() {
    // Posted, because the handler processes events and a dialog may be about to be shown. The
    // dialog must not be answered before its own loop runs.
    QMetaObject::invokeMethod(
        &widget(),
        [this, showing = timesShown_] {
            if (Visible() && showing == timesShown_) {
                Form_Deactivate();
            }
        },
        Qt::QueuedConnection);
}

void Form::setCaption(const std::string& text) {
    widget().setWindowTitle(QString::fromStdString(text));
}

std::string Form::Caption() const {
    return widget().windowTitle().toStdString();
}

void Form::setIcon(const Picture& icon) {
    widget().setWindowIcon(QIcon(pixmapOf(icon)));
}

void Form::setPicture(const Picture& picture) {
    picture_ = picture;
    repaint();
}

enum Form::WindowState Form::WindowState() const {
    if (widget().isMinimized()) {
        return WindowState::minimised;
    }
    return widget().isMaximized() ? WindowState::maximised : WindowState::normal;
}

void Form::setWindowState(enum WindowState state) {
    if (!loaded_) {
        return;
    }
    switch (state) {
    case WindowState::normal:
        widget().showNormal();
        break;
    case WindowState::minimised:
        widget().showMinimized();
        break;
    case WindowState::maximised:
        break; // a drawn window has only one size
    }
}

std::uintptr_t Form::hWnd() const {
    return widget().winId();
}

void Form::Unload() {
    if (!loaded_ || unloading_) {
        return;
    }
    unloading_ = true;
    Form_QueryUnload();
    setVisible(false);
    loaded_ = false;
    Form_Unload();
    Application::formUnloaded();
}

Control* Form::focusedControl() const {
    const auto* focused = dynamic_cast<ControlWidget*>(widget().focusWidget());
    return focused != nullptr && focused != &widget() ? &focused->control() : nullptr;
}

AccessibleTraits Form::accessibleTraits() const {
    using Role = AccessibleTraits::Role;
    return {.role = kind_ == Kind::popup ? Role::menu : Role::window, .name = Caption()};
}

void Form::layOut(std::span<const ControlLayout> table, std::span<Control* const> controls) {
    for (const ControlLayout& row : table) {
        const auto named = std::ranges::find_if(
            controls, [&row](const Control* control) { return control->Name() == row.Name; });
        if (named != controls.end()) {
            (*named)->lay(row);
        }
    }
}

void Form::paint(QPainter& painter) {
    if (wantedPlace_) {
        QMetaObject::invokeMethod(
            &widget(), [this] { askAgainForPlace(); }, Qt::QueuedConnection);
    }
    drawPicture(painter, picture_);
}

} // namespace zvonivec
