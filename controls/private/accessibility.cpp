#include "controls/private/accessibility.h"

#include "controls/CheckBox.h"
#include "controls/ProgressBar.h"
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
        return kind == QAccessible::Name ? QString::fromStdString(control().accessibleTraits().name)
                                         : QAccessibleWidget::text(kind);
    }

    [[nodiscard]] QAccessible::Role role() const override {
        return toRole(control().accessibleTraits().role);
    }

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        if (const auto* box = dynamic_cast<const CheckBox*>(&control())) {
            state.checkable = true;
            state.checked = box->Value() == 1;
            state.checkStateMixed = box->Value() == 2;
        }
        return state;
    }

    [[nodiscard]] QStringList actionNames() const override {
        return pressable() && control().Enabled() ? QStringList{pressAction()} : QStringList{};
    }

    void doAction(const QString& name) override {
        if (name == pressAction() && pressable()) {
            control().press();
        }
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface) {
            return bar() != nullptr ? static_cast<QAccessibleValueInterface*>(this) : nullptr;
        }
        return QAccessibleWidget::interface_cast(type);
    }

    [[nodiscard]] QVariant currentValue() const override { return bar()->Value(); }
    void setCurrentValue(const QVariant& /*value*/) override {}
    [[nodiscard]] QVariant maximumValue() const override { return bar()->Max(); }
    [[nodiscard]] QVariant minimumValue() const override { return bar()->Min(); }
    [[nodiscard]] QVariant minimumStepSize() const override { return 1.0F; }

private:
    [[nodiscard]] Control& control() const {
        return static_cast<ControlWidget*>(widget())->control();
    }
    [[nodiscard]] const ProgressBar* bar() const {
        return dynamic_cast<const ProgressBar*>(&control());
    }
    [[nodiscard]] bool pressable() const {
        return role() == QAccessible::PushButton || role() == QAccessible::CheckBox ||
               role() == QAccessible::MenuItem;
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
