#include "platform/widgets/Accessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QWidget>

namespace {

class ValueInterface final : public QAccessibleWidget, public QAccessibleValueInterface {
  public:
    ValueInterface(QWidget* widget, AccessibleValue& value)
        : QAccessibleWidget(widget, QAccessible::Slider), m_value(value) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? m_value.accessibleValueText() : QAccessibleWidget::text(kind);
    }

    QVariant currentValue() const override { return m_value.accessibleValue(); }
    void setCurrentValue(const QVariant& value) override { m_value.setAccessibleValue(value); }
    QVariant maximumValue() const override { return m_value.accessibleMaximum(); }
    QVariant minimumValue() const override { return m_value.accessibleMinimum(); }
    QVariant minimumStepSize() const override { return m_value.accessibleStep(); }

  private:
    AccessibleValue& m_value;
};

class PressInterface final : public QAccessibleWidget {
  public:
    PressInterface(QWidget* widget, AccessiblePress& press)
        : QAccessibleWidget(widget, QAccessible::Button), m_press(press) {}

    QStringList actionNames() const override {
        return QStringList(pressAction()) + QAccessibleWidget::actionNames();
    }

    void doAction(const QString& name) override {
        if (name == pressAction())
            m_press.accessiblePress();
        else
            QAccessibleWidget::doAction(name);
    }

  private:
    AccessiblePress& m_press;
};

QAccessibleInterface* makeInterface(const QString& /*className*/, QObject* object) {
    auto* widget = qobject_cast<QWidget*>(object);
    if (auto* value = dynamic_cast<AccessibleValue*>(widget))
        return new ValueInterface(widget, *value);
    if (auto* press = dynamic_cast<AccessiblePress*>(widget))
        return new PressInterface(widget, *press);
    return nullptr;
}

} // namespace

void installAccessibility() {
    // An installed factory is asked before Qt's own.
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    Q_UNUSED(isInstalled)
}
