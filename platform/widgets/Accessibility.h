#pragma once

#include <QString>
#include <QVariant>

/// A widget of a kind that Qt does not know, as assistive technology meets it: as something with a value.
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

/// As something that can be pressed.
class AccessiblePress {
  public:
    virtual ~AccessiblePress() = default;
    virtual void accessiblePress() = 0;
};

/// Makes both known to assistive technology; to be called before the first such widget is shown. More than
/// once does no harm.
void installAccessibility();
