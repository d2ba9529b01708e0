#include "controls/Form.h"

#include "controls/Application.h"
#include "controls/private/control_widget.h"
#include "controls/private/picture_data.h"
#include "platform/window_outline.h"
#include "platform/window_place.h"

#include <QAccessible>
#include <QApplication>
#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <utility>

namespace zvonivec {

namespace {

Qt::WindowFlags flagsOf(Form::Kind kind) {
    if (kind == Form::Kind::popup) {
        if (!placesAreReported()) {
            // Only popups have a place under Wayland: beside the window that was last pressed.
            return Qt::Popup | Qt::FramelessWindowHint;
        }
        // A window manager would frame the popup or push it back onto the screen.
        return Qt::Tool | Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint;
    }
    // With these hints the window manager's menu and the taskbar can minimise and close a window
    // without a frame.
    return Qt::Window | Qt::FramelessWindowHint | Qt::WindowSystemMenuHint |
           Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint;
}

/// Returns the nearest twips that a window can have. Window systems use 16-bit coordinates.
float withinLimits(float twips) {
    constexpr float limit = 32000 * TWIPS_PER_PIXEL;
    return std::clamp(twips, -limit, limit);
}

/// Milliseconds that a window manager gets to carry out a request.
constexpr int TIME_TO_MOVE = 200;

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
    if (kind == Kind::main) {
        prepareOutline(widget());
    }
    widget().CloseRequested = [this] { Form_CloseRequest(); };
    widget().Pressed = [this] { wantedPlace_.reset(); }; // from here on the user moves it
    widget().Moved = [this] { takeReportedPlace(); };
    widget().SightChanged = [this](bool shown) { sightChanged(shown); };
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

bool Form::placeIsKnown() {
    return placesAreReported();
}

Form::PixelPlace Form::place() const {
    if (wantedPlace_) {
        // Of a hidden window, or the window manager is still at it.
        const QPointF wanted = nearestPlace({wantedPlace_->x, wantedPlace_->y});
        return {wanted.x(), wanted.y()};
    }
    const QPointF seen = placeOf(widget()).value_or(widget().pos());
    return {seen.x(), seen.y()};
}

Form::PixelPlace Form::placeToKeep() const {
    const PixelPlace now = place();
    return refused_ && refused_->granted == now ? refused_->wanted : now;
}

float Form::Left() const {
    return static_cast<float>(place().x) * TWIPS_PER_PIXEL;
}

float Form::Top() const {
    return static_cast<float>(place().y) * TWIPS_PER_PIXEL;
}

float Form::LeftToKeep() const {
    return static_cast<float>(placeToKeep().x) * TWIPS_PER_PIXEL;
}

float Form::TopToKeep() const {
    return static_cast<float>(placeToKeep().y) * TWIPS_PER_PIXEL;
}

void Form::setLeft(float twips) {
    if (!std::isnan(twips)) {
        moveTo({withinLimits(twips) / TWIPS_PER_PIXEL, place().y});
    }
}

void Form::setTop(float twips) {
    if (!std::isnan(twips)) {
        moveTo({place().x, withinLimits(twips) / TWIPS_PER_PIXEL});
    }
}

void Form::moveTo(PixelPlace wanted) {
    refused_.reset();
    wantedPlace_ = wanted;
    if (widget().isVisible()) { // a hidden window is moved once, before it is shown
        moveWindow(widget(), {wanted.x, wanted.y});
        checkPlaceLater(1);
    }
}

void Form::checkPlaceLater(int requests) {
    QTimer::singleShot(TIME_TO_MOVE, &widget(), [this, requests, showing = timesShown_] {
        if (showing == timesShown_) {
            checkPlace(requests);
        }
    });
}

Form::Place Form::placeOnScreen(const Form& other, Place wanted) const {
    const QRect screen = widget().screen()->availableGeometry();
    const auto within = [](float place, int first, int room, float size) {
        const float last = toTwips(first + room) - size;
        return std::max(toTwips(first), std::min(place, last));
    };
    return {.left = within(wanted.left, screen.left(), screen.width(), other.Width()),
            .top = within(wanted.top, screen.top(), screen.height(), other.Height())};
}

void Form::setVisible(bool on) {
    if (loaded_ || !on) {
        const bool changes = on != Visible();
        if (on && !widget().isVisible()) {
            wantedPlace_ = place();
            moveWindow(widget(), {wantedPlace_->x, wantedPlace_->y});
            ++timesShown_;
        }
        Control::setVisible(on);
        if (on && kind_ == Kind::popup && wantedPlace_) {
            // The toolkit shows a window at a whole logical pixel.
            moveWindow(widget(), {wantedPlace_->x, wantedPlace_->y});
        }
        if (changes && kind_ == Kind::popup && QAccessible::isActive()) {
            QAccessibleEvent event(&widget(),
                                   on ? QAccessible::PopupMenuStart : QAccessible::PopupMenuEnd);
            QAccessible::updateAccessibility(&event);
            QWidget* focused = QApplication::focusWidget();
            if (!on && focused != nullptr) { // the focus comes back from the menu's entry
                QAccessibleEvent back(focused, QAccessible::Focus);
                QAccessible::updateAccessibility(&back);
            }
        }
    }
}

void Form::takeReportedPlace() {
    // The toolkit rounds to logical pixels. Whoever moves the window after this means it.
    if (wantedPlace_ && timesSettled_ == timesShown_ && !isSettling_ && widget().isVisible() &&
        (nearestPlace({wantedPlace_->x, wantedPlace_->y}) - widget().pos()).manhattanLength() <=
            1) {
        wantedPlace_.reset();
    }
}

void Form::checkPlace(int requests) {
    if (!wantedPlace_) {
        return;
    }
    const QPointF wanted = nearestPlace({wantedPlace_->x, wantedPlace_->y});
    const auto now = placeOf(widget());
    const bool isMoving = QGuiApplication::mouseButtons() != Qt::NoButton; // by the user
    if (!now || isMoving) {
        isSettling_ = false;
        wantedPlace_.reset();
        return;
    }
    if (std::exchange(timesSettled_, timesShown_) != timesShown_ && *now == wanted) {
        isSettling_ = true; // a compositor may still put the new window elsewhere
        checkPlaceLater(requests);
        return;
    }
    if (std::exchange(isSettling_, false) && *now != wanted) {
        refused_ = Refusal{.wanted = *wantedPlace_, .granted = {now->x(), now->y()}};
        wantedPlace_.reset();
        return;
    }
    if (*now == wanted) {
        wantedPlace_.reset();
        return;
    }
    const PixelPlace seen{now->x(), now->y()};
    if (std::exchange(seenPlace_, seen) != seen && requests > 0) {
        checkPlaceLater(requests); // it is still being moved
        return;
    }
    if (requests == 0) {
        moveWindow(widget(), wanted);
    } else if (requests == 1) {
        insistOnPlace(widget(), wanted);
    } else {
        refused_ = Refusal{.wanted = *wantedPlace_, .granted = {now->x(), now->y()}};
        wantedPlace_.reset();
        return;
    }
    checkPlaceLater(requests + 1);
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

void Form::sightChanged(bool shown) {
    isShown_ = shown;
    Form_SightChanged(shown);
    if (kind_ == Kind::main && shown && !coverIsWatched_) {
        coverIsWatched_ = true;
        watchCover(widget(), [this](bool covered) {
            if (isShown_) {
                Form_SightChanged(!covered);
            }
        });
    }
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
    outlined_.reset();
    repaint();
}

enum Form::WindowState Form::WindowState() const {
    if (isMinimised(widget())) {
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
        minimise(widget());
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

const QPixmap& Form::outlinedPicture() {
    const double ratio = widget().devicePixelRatioF();
    if (outlined_ == nullptr || outlined_->devicePixelRatio() != ratio) {
        QImage image(widget().size() * ratio, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        drawPicture(painter, picture_);
        // The pixels along the edge, which are covered in part, take their colours from those
        // beside them.
        const QPixmap inner = QPixmap::fromImage(image);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
        for (const QPointF step :
             {QPointF(1, 0), QPointF(-1, 0), QPointF(0, 1), QPointF(0, -1), QPointF(1, 1),
              QPointF(-1, -1), QPointF(1, -1), QPointF(-1, 1)}) {
            painter.drawPixmap(step / ratio, inner);
        }
        eraseOutside(painter, widget());
        painter.end();
        outlined_ = std::make_unique<QPixmap>(QPixmap::fromImage(image));
    }
    return *outlined_;
}

void Form::paint(QPainter& painter) {
    if (wantedPlace_ && timesChecked_ != timesShown_) {
        timesChecked_ = timesShown_;
        QMetaObject::invokeMethod(
            &widget(), [this] { checkPlace(0); }, Qt::QueuedConnection);
    }
    if (paintsItsOutline(widget())) {
        painter.drawPixmap(0, 0, outlinedPicture());
    } else {
        drawPicture(painter, picture_);
    }
}

} // namespace zvonivec
