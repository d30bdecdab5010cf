#include "mainwindow/PreviewStrip.h"

#include "platform/widgets/QtColor.h"

#include <QPainter>
#include <QStyle>

#include <cmath>
#include <numeric>

namespace {

constexpr int gap = 16;
constexpr int captionGap = 4;
constexpr int tallest = PreviewStrip::sizes.back();

} // namespace

PreviewStrip::PreviewStrip(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName(tr("Icons as they will be written, at 16, 32, 64 and 128 pixels"));
}

void PreviewStrip::setInput(const GenerationInput& input) {
    m_input = &input;
    m_renderer = std::make_unique<IconRenderer>(input, m_screen);
    render();
}

void PreviewStrip::render() {
    const Image picture = m_input != nullptr ? m_input->sourceImage() : Image();
    for (std::size_t i = 0; i < sizes.size(); ++i)
        m_icons.at(i) = picture.isNull() ? QImage()
                                         : m_renderer->drawImage(picture, QSizeF(sizes.at(i), sizes.at(i)))
                                               .largestRaster()
                                               .valueOr({});
    update();
}

QSize PreviewStrip::sizeHint() const {
    const int width =
        std::accumulate(sizes.begin(), sizes.end(), 0) + gap * (static_cast<int>(sizes.size()) - 1);
    return {width, tallest + captionGap + fontMetrics().height()};
}

QRect PreviewStrip::iconRect(std::size_t index) const {
    int left = 0;
    for (std::size_t i = 0; i < index; ++i)
        left += sizes.at(i) + gap;
    const int size = sizes.at(index);
    return QStyle::visualRect(layoutDirection(), rect(), QRect(left, tallest - size, size, size));
}

void PreviewStrip::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const double scale = devicePixelRatioF();
    // No smoothing where each pixel covers a whole number of display pixels.
    painter.setRenderHint(QPainter::SmoothPixmapTransform, scale != std::floor(scale));
    const QColor ground = palette().color(QPalette::Window);
    const QColor text = palette().color(QPalette::WindowText);
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        const QRect place = iconRect(i);
        if (m_icons.at(i).isNull()) {
            painter.save();
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(Qt::NoPen);
            painter.setBrush(mixed(text, ground, 0.1));
            const double radius = place.width() * 0.22;
            painter.drawRoundedRect(place, radius, radius);
            painter.restore();
        } else {
            painter.drawImage(place, m_icons.at(i));
        }
        painter.setPen(mixed(text, ground, 0.8));
        const QString caption = QString::number(sizes.at(i));
        const int captionWidth = fontMetrics().horizontalAdvance(caption);
        // The caption is centred below its icon, but stays inside of the strip.
        const int left = qBound(0, place.center().x() + 1 - captionWidth / 2, width() - captionWidth);
        painter.drawText(QRect(left, tallest + captionGap, captionWidth, fontMetrics().height()),
                         Qt::AlignLeft | Qt::AlignAbsolute, caption);
    }
}
