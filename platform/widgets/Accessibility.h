#pragma once

#include <QString>
#include <QVariant>

/// A widget that assistive technology finds as an element with a value. It is for kinds of widgets that Qt
/// does not know.
class AccessibleValue {
  public:
    virtual ~AccessibleValue() = default;
    virtual QString accessibleValueText() const = 0;
    virtual QVariant accessibleValue() const = 0;
    virtual void setAccessibleValue(const QVariant& value) = 0;
    virtual QVariant accessibleMinimum() const = 0;
    virtual QVariant accessibleMaximum() const = 0;
    virtual QVariant accessibleStep() const = 0;
};

/// A widget that assistive technology finds as an element that can be pressed.
class AccessiblePress {
  public:
    virtual ~AccessiblePress() = default;
    virtual void accessiblePress() = 0;
};

/// Makes both kinds of widgets known to assistive technology. Call it before the first of them is shown;
/// further calls do nothing.
void installAccessibility();
