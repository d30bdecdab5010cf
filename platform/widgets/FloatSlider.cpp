#include "platform/widgets/FloatSlider.h"

#include <QEvent>
#include <QLocale>

#include <algorithm>
#include <cmath>

namespace {

constexpr int steps = 1000;

} // namespace

FloatSlider::FloatSlider(QWidget* parent) : QSlider(Qt::Horizontal, parent) {
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
    // Not a number fails both comparisons and becomes the minimum.
    const float limited = value > m_minimum ? std::min(value, std::max(m_minimum, m_maximum)) : m_minimum;
    const double range = static_cast<double>(m_maximum) - static_cast<double>(m_minimum);
    const double share =
        range > 0 ? (static_cast<double>(limited) - static_cast<double>(m_minimum)) / range : 0;
    m_value = limited;
    m_isProgrammed = true;
    setValue(static_cast<int>(std::lround(share * steps)));
    m_isProgrammed = false;
    Q_EMIT valueTextChanged(valueText());
}

/// The knob stands on a step that the user has chosen.
void FloatSlider::takeStep() {
    if (m_isProgrammed)
        return;
    const double range = static_cast<double>(m_maximum) - static_cast<double>(m_minimum);
    m_value = static_cast<float>(static_cast<double>(m_minimum) + range * value() / steps);
    Q_EMIT valueTextChanged(valueText());
    Q_EMIT action();
}

QString FloatSlider::valueText() const {
    // Tenths of a percent, without a zero that says nothing.
    const double percent = std::round(static_cast<double>(m_value) * 1000) / 10;
    return tr("%1 %").arg(locale().toString(percent, 'f', QLocale::FloatingPointShortest));
}

void FloatSlider::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LocaleChange)
        Q_EMIT valueTextChanged(valueText());
    QSlider::changeEvent(event);
}
