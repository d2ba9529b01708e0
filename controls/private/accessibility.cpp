#include "controls/private/accessibility.h"

#include "controls/private/control_widget.h"

#include <QAccessible>
#include <QAccessibleWidget>

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
    case AccessibleTraits::Role::bar:
        return QAccessible::ProgressBar;
    case AccessibleTraits::Role::checkBox:
        return QAccessible::CheckBox;
    case AccessibleTraits::Role::menuItem:
        return QAccessible::MenuItem;
    case AccessibleTraits::Role::group:
        return QAccessible::Grouping;
    case AccessibleTraits::Role::window:
        return QAccessible::Window;
    }
    return QAccessible::NoRole;
}

class AccessibleControl : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit AccessibleControl(ControlWidget* widget)
        : QAccessibleWidget(widget, toRole(widget->control().accessibleTraits().role)) {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? QString::fromStdString(traits().name)
                                         : QAccessibleWidget::text(kind);
    }

    [[nodiscard]] QAccessible::Role role() const override { return toRole(traits().role); }

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.disabled = state.disabled || !traits().available;
        if (const auto check = traits().check) {
            state.checkable = true;
            state.checked = check == AccessibleTraits::Check::on;
            state.checkStateMixed = check == AccessibleTraits::Check::undecided;
        }
        return state;
    }

    [[nodiscard]] QStringList actionNames() const override {
        return traits().pressable && control().Enabled() ? QStringList{pressAction()}
                                                         : QStringList{};
    }

    void doAction(const QString& name) override {
        if (name == pressAction() && traits().pressable) {
            control().press();
        }
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface) {
            return traits().range ? static_cast<QAccessibleValueInterface*>(this) : nullptr;
        }
        return QAccessibleWidget::interface_cast(type);
    }

    [[nodiscard]] QVariant currentValue() const override { return range().value; }
    void setCurrentValue(const QVariant& /*value*/) override {}
    [[nodiscard]] QVariant maximumValue() const override { return range().maximum; }
    [[nodiscard]] QVariant minimumValue() const override { return range().minimum; }
    [[nodiscard]] QVariant minimumStepSize() const override { return 1.0F; }

private:
    [[nodiscard]] Control& control() const {
        return static_cast<ControlWidget*>(widget())->control();
    }
    [[nodiscard]] AccessibleTraits traits() const { return control().accessibleTraits(); }
    [[nodiscard]] AccessibleTraits::Range range() const {
        return traits().range.value_or(AccessibleTraits::Range{});
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
