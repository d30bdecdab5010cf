#include "shell/PageGround.h"

#include "platform/widgets/Contrast.h"

#include <QEvent>
#include <QPainter>

namespace {

/// In points. There is little room between the dots and the buttons below.
constexpr int sideMargin = 6;
constexpr int margin = 2;
constexpr QColor ground(208, 208, 210);

} // namespace

PageGround::PageGround(QWidget& control) : QWidget(control.parentWidget()) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    control.installEventFilter(this);
    connect(&control, &QObject::destroyed, this, &QObject::deleteLater);
    follow(control);
    stackUnder(&control);
}

void PageGround::follow(const QWidget& control) {
    setGeometry(control.geometry().adjusted(-sideMargin, -margin, sideMargin, margin));
    setVisible(!control.isHidden());
}

bool PageGround::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::ShowToParent:
    case QEvent::HideToParent:
        follow(*static_cast<QWidget*>(watched));
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void PageGround::paintEvent(QPaintEvent* /*event*/) {
    if (!isDark(palette()))
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(rect(), height() / 2.0, height() / 2.0);
}
