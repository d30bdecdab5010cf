#include "platform/widgets/FloatSlider.h"

#include <QEvent>
#include <QLocale>

#include <algorithm>
#include <cmath>

namespace {

constexpr int steps = 1000;

} // namespace

FloatSlider::FloatSlider(QWidget* parent) : QSlider(Qt::Horizontal, parent) {
    installAccessibility();
    setRange(0, steps);
    setSingleStep(steps / 100);
    setPageStep(steps / 10);
    connect(this, &QSlider::valueChanged, this, &FloatSlider::takeStep);
}

void FloatSlider::setMinimumFloat(float minimum) {
    m_minimum = minimum;
    setFloatValue(m_value);
}

void FloatSlider::setMaximumFloat(float maximum) {
    m_maximum = maximum;
    setFloatValue(m_value);
}

void FloatSlider::setFloatValue(float value) {
    // A NaN fails the comparison and becomes the minimum.
    const float limited = value > m_minimum ? std::min(value, std::max(m_minimum, m_maximum)) : m_minimum;
    m_value = limited;
    m_isProgrammed = true;
    setValue(stepOf(limited));
    m_isProgrammed = false;
    Q_EMIT valueTextChanged(valueText());
}

int FloatSlider::stepOf(float value) const {
    const double range = static_cast<double>(m_maximum) - static_cast<double>(m_minimum);
    const double share =
        range > 0 ? (static_cast<double>(value) - static_cast<double>(m_minimum)) / range : 0;
    return static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * steps));
}

void FloatSlider::setAccessibleValue(const QVariant& value) {
    setValue(stepOf(value.toFloat()));
}

QVariant FloatSlider::accessibleStep() const {
    return (static_cast<double>(m_maximum) - static_cast<double>(m_minimum)) * singleStep() / steps;
}

/// Takes the value of the step to which the user has moved the knob.
void FloatSlider::takeStep() {
    if (m_isProgrammed)
        return;
    const double range = static_cast<double>(m_maximum) - static_cast<double>(m_minimum);
    m_value = static_cast<float>(static_cast<double>(m_minimum) + range * value() / steps);
    Q_EMIT valueTextChanged(valueText());
    Q_EMIT action();
}

QString FloatSlider::valueText() const {
    return percentText(static_cast<double>(m_value));
}

QString FloatSlider::percentText(double value) const {
    // Two decimals tell steps apart. Zeros at the end are left out.
    const double percent = std::round(value * 10000) / 100;
    return tr("%1 %").arg(locale().toString(percent, 'f', QLocale::FloatingPointShortest));
}

/// A step of a hundredth of the range moves the knob by a point or more.
QSize FloatSlider::minimumSizeHint() const {
    constexpr int knobAndSteps = 112;
    constexpr int characters = 20;
    return {std::max(knobAndSteps, characters * fontMetrics().averageCharWidth()),
            QSlider::sizeHint().height()};
}

QSize FloatSlider::sizeHint() const {
    return QSlider::sizeHint().expandedTo(minimumSizeHint());
}

void FloatSlider::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LocaleChange)
        Q_EMIT valueTextChanged(valueText());
    QSlider::changeEvent(event);
}
