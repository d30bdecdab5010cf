#pragma once

#include "platform/widgets/Accessibility.h"

#include <QSlider>

/// A slider over single-precision floats, with 1,000 steps from the minimum to the maximum. An arrow key
/// moves by a hundredth of the range, Page Up and Page Down by a tenth.
class FloatSlider : public QSlider, public AccessibleValue {
    Q_OBJECT
    Q_PROPERTY(float minimumFloat READ minimumFloat WRITE setMinimumFloat)
    Q_PROPERTY(float maximumFloat READ maximumFloat WRITE setMaximumFloat)
    Q_PROPERTY(float floatValue READ floatValue WRITE setFloatValue)

  public:
    explicit FloatSlider(QWidget* parent = nullptr);

    float minimumFloat() const { return m_minimum; }
    /// The value stays, limited to the new range.
    void setMinimumFloat(float minimum);
    float maximumFloat() const { return m_maximum; }
    void setMaximumFloat(float maximum);

    float floatValue() const { return m_value; }
    /// Sets the value, limited to the range. The value may lie between two steps; the knob goes to the
    /// nearest step. Sends no `action`.
    void setFloatValue(float value);

    /// The value as a percentage, in the widget's locale.
    QString valueText() const;

    /// `value` as `valueText` would show it.
    QString percentText(double value) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    QString accessibleValueText() const override { return valueText(); }
    QVariant accessibleValue() const override { return static_cast<double>(m_value); }
    /// Moves the knob as the user does, with `action`.
    void setAccessibleValue(const QVariant& value) override;
    QVariant accessibleMinimum() const override { return static_cast<double>(m_minimum); }
    QVariant accessibleMaximum() const override { return static_cast<double>(m_maximum); }
    QVariant accessibleStep() const override;

  Q_SIGNALS:
    /// The user has moved the knob.
    void action();
    /// The user or the program has set the value, or the locale has changed.
    void valueTextChanged(const QString& text);

  protected:
    void changeEvent(QEvent* event) override;

  private:
    void takeStep();
    int stepOf(float value) const;

    float m_minimum = 0;
    float m_maximum = 1;
    float m_value = 0;
    bool m_isProgrammed = false;
};
