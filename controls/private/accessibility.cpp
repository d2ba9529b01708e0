#include "controls/private/accessibility.h"

#include "controls/private/control_widget.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QApplication>
#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

namespace zvonivec {

namespace {

QAccessible::Role toRole(AccessibleTraits::Role role) {
    switch (role) {
    case AccessibleTraits::Role::graphic:
        return QAccessible::Graphic;
    case AccessibleTraits::Role::button:
        return QAccessible::PushButton;
    case AccessibleTraits::Role::text:
        return QAccessible::StaticText;
    case AccessibleTraits::Role::slider:
        return QAccessible::Slider;
    case AccessibleTraits::Role::checkBox:
        return QAccessible::CheckBox;
    case AccessibleTraits::Role::menuItem:
        return QAccessible::MenuItem;
    case AccessibleTraits::Role::separator:
        return QAccessible::Separator;
    case AccessibleTraits::Role::group:
        return QAccessible::Grouping;
    case AccessibleTraits::Role::decoration:
        return QAccessible::Border;
    case AccessibleTraits::Role::window:
        return QAccessible::Window;
    case AccessibleTraits::Role::menu:
        return QAccessible::PopupMenu;
    }
    return QAccessible::NoRole;
}

AccessibleTraits traitsOf(const ControlWidget& widget) {
    return widget.control().accessibleTraits();
}

/// Adds the controls in a widget. Groups themselves are left out, and so is decoration.
void addControlsIn(const QWidget& container, std::vector<QWidget*>& controls) {
    for (QObject* child : container.children()) {
        auto* widget = dynamic_cast<ControlWidget*>(child);
        if (widget == nullptr || widget->isWindow()) {
            continue;
        }
        const AccessibleTraits::Role role = traitsOf(*widget).role;
        if (role == AccessibleTraits::Role::group) {
            addControlsIn(*widget, controls);
        } else if (role != AccessibleTraits::Role::decoration) {
            controls.push_back(widget);
        }
    }
}

class AccessibleControl : public QAccessibleWidget,
                          public QAccessibleValueInterface,
                          public QAccessibleTextInterface {
public:
    explicit AccessibleControl(ControlWidget* widget)
        : QAccessibleWidget(widget, toRole(traitsOf(*widget).role)) {}

    // --- The tree: the controls of a window as they lie, from top to bottom ----------------------
    [[nodiscard]] int childCount() const override { return static_cast<int>(children().size()); }
    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        const std::vector<QWidget*> all = children();
        const bool exists = index >= 0 && index < static_cast<int>(all.size());
        return exists ? QAccessible::queryAccessibleInterface(all[static_cast<std::size_t>(index)])
                      : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        const std::vector<QWidget*> all = children();
        const auto found = std::ranges::find(all, child != nullptr ? child->object() : nullptr);
        return found == all.end() ? -1 : static_cast<int>(found - all.begin());
    }
    [[nodiscard]] QAccessibleInterface* parent() const override {
        QWidget* container = widget()->parentWidget();
        while (container != nullptr && !container->isWindow()) {
            container = container->parentWidget();
        }
        return container != nullptr && !widget()->isWindow()
                   ? QAccessible::queryAccessibleInterface(container)
                   : QAccessibleWidget::parent();
    }

    // --- What the control is ---------------------------------------------------------------------
    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        const AccessibleTraits all = traits();
        switch (kind) {
        case QAccessible::Name:
            return QString::fromStdString(all.name);
        case QAccessible::Description: {
            const std::string& toolTip = control().ToolTipText();
            return toolTip != all.name ? QString::fromStdString(toolTip) : QString();
        }
        case QAccessible::Value:
            return QString::fromStdString(all.range ? all.range->text : all.content);
        default:
            return QAccessibleWidget::text(kind);
        }
    }

    [[nodiscard]] QAccessible::Role role() const override { return toRole(traits().role); }

    [[nodiscard]] QAccessible::State state() const override {
        const AccessibleTraits all = traits();
        QAccessible::State state = QAccessibleWidget::state();
        state.disabled = state.disabled || !all.available;
        const bool isEntry = all.role == AccessibleTraits::Role::menuItem || all.check;
        state.focusable = state.focusable || (isEntry && !state.disabled);
        state.focused = state.focused || control().IsCurrent();
        if (const auto check = all.check) {
            state.checkable = true;
            state.checked = check == AccessibleTraits::Check::on;
            state.checkStateMixed = check == AccessibleTraits::Check::undecided;
        }
        state.readOnly = all.role == AccessibleTraits::Role::text;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface) {
            return traits().range ? static_cast<QAccessibleValueInterface*>(this) : nullptr;
        }
        if (type == QAccessible::TextInterface) {
            const bool isText = traits().role == AccessibleTraits::Role::text;
            return isText ? static_cast<QAccessibleTextInterface*>(this) : nullptr;
        }
        return QAccessibleWidget::interface_cast(type);
    }

    // --- Actions ---------------------------------------------------------------------------------
    [[nodiscard]] QStringList actionNames() const override {
        QStringList names;
        if (!control().Enabled()) {
            return names;
        }
        const auto add = [&names](bool isOffered, const QString& name) {
            if (isOffered) {
                names.append(name);
            }
        };
        add(traits().pressable, pressAction());
        add(actions().Increase != nullptr, increaseAction());
        add(actions().Decrease != nullptr, decreaseAction());
        add(actions().ShowMenu != nullptr, showMenuAction());
        add(widget()->focusPolicy() != Qt::NoFocus, setFocusAction());
        return names;
    }

    void doAction(const QString& name) override {
        if (!actionNames().contains(name)) {
            return;
        }
        if (name == setFocusAction()) {
            widget()->setFocus(Qt::TabFocusReason);
        } else if (name == pressAction()) {
            later([](Control& control) { control.press(); });
        } else if (name == increaseAction()) {
            later([](Control& control) { control.Accessible.Increase(); });
        } else if (name == decreaseAction()) {
            later([](Control& control) { control.Accessible.Decrease(); });
        } else if (name == showMenuAction()) {
            later([](Control& control) { control.Accessible.ShowMenu(); });
        }
    }

    // --- Value -----------------------------------------------------------------------------------
    [[nodiscard]] QVariant currentValue() const override { return range().value; }
    void setCurrentValue(const QVariant& value) override {
        if (actions().SetValue && control().Enabled()) {
            later([wanted = value.toFloat()](Control& control) {
                control.Accessible.SetValue(wanted);
            });
        }
    }
    [[nodiscard]] QVariant maximumValue() const override { return range().maximum; }
    [[nodiscard]] QVariant minimumValue() const override { return range().minimum; }
    [[nodiscard]] QVariant minimumStepSize() const override { return 1.0F; }

    // --- Text, which can only be read ------------------------------------------------------------
    [[nodiscard]] QString text(int from, int to) const override {
        return content().mid(from, to - from);
    }
    [[nodiscard]] int characterCount() const override { return static_cast<int>(content().size()); }
    [[nodiscard]] int cursorPosition() const override { return 0; }
    void setCursorPosition(int /*position*/) override {}
    [[nodiscard]] int selectionCount() const override { return 0; }
    void selection(int /*index*/, int* from, int* to) const override { *from = *to = 0; }
    void addSelection(int /*from*/, int /*to*/) override {}
    void removeSelection(int /*index*/) override {}
    void setSelection(int /*index*/, int /*from*/, int /*to*/) override {}
    [[nodiscard]] QRect characterRect(int /*offset*/) const override { return rect(); }
    [[nodiscard]] int offsetAtPoint(const QPoint& /*point*/) const override { return 0; }
    void scrollToSubstring(int /*from*/, int /*to*/) override {}
    [[nodiscard]] QString attributes(int /*offset*/, int* from, int* to) const override {
        *from = 0;
        *to = characterCount();
        return {};
    }

private:
    [[nodiscard]] Control& control() const {
        return static_cast<ControlWidget*>(widget())->control();
    }
    [[nodiscard]] const AccessibleActions& actions() const { return control().Accessible; }
    [[nodiscard]] AccessibleTraits traits() const { return control().accessibleTraits(); }
    [[nodiscard]] AccessibleTraits::Range range() const {
        return traits().range.value_or(AccessibleTraits::Range{});
    }
    [[nodiscard]] QString content() const {
        const AccessibleTraits all = traits();
        return QString::fromStdString(all.content.empty() ? all.name : all.content);
    }
    [[nodiscard]] std::vector<QWidget*> children() const {
        std::vector<QWidget*> all;
        addControlsIn(*widget(), all);
        std::ranges::stable_sort(all, {}, [this](const QWidget* child) {
            const QPoint place = child->mapTo(widget(), QPoint(0, 0));
            return std::pair(place.y(), place.x());
        });
        return all;
    }

    /// Carries out an action after assistive technology has got its answer: an action may show a
    /// box, and returns only when the user has closed it. Like the pointer, it does nothing while a
    /// box or dialog is open.
    void later(const std::function<void(Control&)>& action) const {
        QMetaObject::invokeMethod(
            widget(),
            [action, &control = control()] {
                if (control.Enabled() && QApplication::activeModalWidget() == nullptr) {
                    action(control);
                }
            },
            Qt::QueuedConnection);
    }
};

QAccessibleInterface* makeAccessible(const QString& /*className*/, QObject* object) {
    auto* widget = dynamic_cast<ControlWidget*>(object);
    return widget != nullptr ? new AccessibleControl(widget) : nullptr;
}

} // namespace

void exposeControls() {
    QAccessible::installFactory(makeAccessible);
}

} // namespace zvonivec
