#include "platform/widgets/ColorWell.h"

#include "platform/widgets/Contrast.h"
#include "platform/widgets/QtColor.h"

#include <QColorDialog>
#include <QEvent>
#include <QPainter>
#include <QPainterPath>

ColorWell::ColorWell(QWidget* parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, this, &ColorWell::openPanel);
    setColor({});
}

void ColorWell::setColor(const Color& color) {
    m_color = color;
    const QColor shown = toQColor(color);
    setAccessibleDescription(shown.alpha() == 255
                                 ? shown.name()
                                 : tr("%1, alpha %2 %").arg(shown.name()).arg(qRound(shown.alphaF() * 100)));
    update();
    Q_EMIT colorChanged();
}

QColor ColorWell::qcolor() const {
    return toQColor(m_color);
}

void ColorWell::setQColor(const QColor& color) {
    setColor(fromQColor(color));
}

QSize ColorWell::sizeHint() const {
    const int height = qMax(24, fontMetrics().height() + 10);
    return {height * 2, height};
}

void ColorWell::openPanel() {
    if (m_panel != nullptr) {
        m_panel->raise();
        m_panel->activateWindow();
        return;
    }
    const QColor before = qcolor();
    m_panel = new QColorDialog(before, window());
    m_panel->setAttribute(Qt::WA_DeleteOnClose);
    m_panel->setOption(QColorDialog::ShowAlphaChannel, !m_isOpaque);
    m_panel->setModal(false);
    connect(m_panel, &QColorDialog::currentColorChanged, this, &ColorWell::choose);
    connect(m_panel, &QDialog::rejected, this, [this, before] { choose(before); });
    m_panel->show();
}

void ColorWell::choose(const QColor& color) {
    const Color chosen = fromQColor(color);
    if (!color.isValid() || chosen == m_color)
        return;
    setColor(chosen);
    Q_EMIT action();
}

void ColorWell::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange)
        update();
    QAbstractButton::changeEvent(event);
}

void ColorWell::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled())
        painter.setOpacity(0.4);
    const QRectF frame = QRectF(rect()).adjusted(2.5, 2.5, -2.5, -2.5);
    constexpr double radius = 4;
    QPainterPath shape;
    shape.addRoundedRect(frame, radius, radius);
    // A translucent colour lies on a checkerboard.
    if (m_color.alpha < 1) {
        painter.fillPath(shape, Qt::white);
        constexpr double square = 6;
        QPainterPath dark;
        for (int row = 0; row * square < frame.height(); ++row) {
            for (int column = row % 2; column * square < frame.width(); column += 2)
                dark.addRect(
                    QRectF(frame.left() + column * square, frame.top() + row * square, square, square));
        }
        painter.fillPath(dark.intersected(shape), QColor(190, 190, 190));
    }
    painter.fillPath(shape, qcolor());
    painter.setPen(QPen(edgeColor(palette()), 1));
    painter.drawPath(shape);
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius + 1, radius + 1);
    }
}
