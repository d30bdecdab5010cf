#include "mainwindow/PreviewStrip.h"

#include "base/LongWork.h"
#include "generation/Platforms.h"
#include "imaging/svg/SvgTime.h"
#include "platform/widgets/PreviewLooks.h"
#include "platform/widgets/QtColor.h"

#include <QLocale>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QtMath>

#include <cmath>
#include <numeric>

namespace {

/// In points.
constexpr int iconGap = 5;
constexpr int stripMargin = 4;
constexpr int captionGap = 4;
constexpr int tallest = PreviewStrip::sizes.back();

/// The rectangle `pixels` of the display, counted from the upper left corner of what `painter` draws, in the
/// painter's coordinates. At a scale such as 1.5 that corner may lie within a pixel of the display.
QRectF onDisplay(const QPainter& painter, const QRectF& pixels) {
    const QTransform display = painter.deviceTransform();
    const QPointF corner = display.map(QPointF(0, 0));
    return display.inverted().mapRect(pixels.translated(std::round(corner.x()), std::round(corner.y())));
}

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

void PreviewStrip::renderLater() {
    m_areOld = true;
    update();
}

const QImage& PreviewStrip::icon(std::size_t index) {
    if (m_areOld)
        render();
    return m_icons.at(index);
}

void PreviewStrip::render() {
    m_areOld = false;
    const Image picture = m_input != nullptr ? m_input->sourceImage() : Image();
    const SvgRequest request(svgTimeInWindow.seconds);
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        LongWork::step();
        m_icons.at(i) = picture.isNull() ? QImage()
                                         : m_renderer->drawImage(picture, QSizeF(sizes.at(i), sizes.at(i)))
                                               .largestRaster()
                                               .valueOr({});
    }
    update();
}

QSize PreviewStrip::sizeHint() const {
    const double scale = devicePixelRatioF();
    const auto count = static_cast<int>(sizes.size());
    const double icons = std::accumulate(sizes.begin(), sizes.end(), 0) / scale;
    return {static_cast<int>(std::ceil(icons)) + 2 * stripMargin * count + iconGap * (count - 1),
            static_cast<int>(std::ceil(tallest / scale)) + 2 * stripMargin + captionGap +
                fontMetrics().height()};
}

QRect PreviewStrip::iconRect(std::size_t index) const {
    const double scale = devicePixelRatioF();
    const int edge = qRound(stripMargin * scale);
    int left = edge;
    for (std::size_t i = 0; i < index; ++i)
        left += sizes.at(i) + 2 * edge + qRound(iconGap * scale);
    const int size = sizes.at(index);
    return QStyle::visualRect(layoutDirection(), QRect(QPoint(0, 0), (QSizeF(this->size()) * scale).toSize()),
                              QRect(left, edge + tallest - size, size, size));
}

/// The shape to which the systems of the chosen platform cut icons. Empty for a Mac, whose icons have shapes
/// of their own.
std::optional<ProofCut> PreviewStrip::cut() const {
    const auto platforms = Platforms::ofIndex(m_input != nullptr ? m_input->platformIndex() : -1);
    if (platforms.empty() || platforms.front() == Platform::Mac)
        return {};
    const bool isSquircle = platforms.front() == Platform::Iphone || platforms.front() == Platform::Ipad;
    return isSquircle ? ProofCut::Squircle : ProofCut::Circle;
}

void PreviewStrip::drawIcon(QPainter& painter, std::size_t index) const {
    const QRectF pixels = iconRect(index);
    const double edge = qRound(stripMargin * devicePixelRatioF());
    const QRectF place = onDisplay(painter, pixels);
    const QRectF ground = onDisplay(painter, pixels.adjusted(-edge, -edge, edge, edge));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    constexpr double radius = 4;
    if (m_icons.at(index).isNull()) {
        painter.setBrush(
            mixed(palette().color(QPalette::WindowText), palette().color(QPalette::Window), 0.1));
        painter.drawRoundedRect(ground, radius, radius);
        painter.restore();
        return;
    }
    QPainterPath shape;
    shape.addRoundedRect(ground, radius, radius);
    QPainterPath half;
    half.addRect(QRectF(ground.center().x(), ground.top(), ground.width(), ground.height()));
    painter.fillPath(shape, PreviewLooks::lightGround);
    painter.fillPath(shape.intersected(half), PreviewLooks::darkGround);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(
        QPen(mixed(palette().color(QPalette::WindowText), palette().color(QPalette::Window), 0.25), 0));
    painter.drawPath(shape);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.drawImage(place, m_icons.at(index));
    constexpr int smallestCut = 32;
    if (const std::optional<ProofCut> shown = cut(); shown && sizes.at(index) >= smallestCut) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(QColor(128, 128, 128, 150), 1 / devicePixelRatioF()));
        painter.drawPath(ProofShapes::path(*shown, place));
    }
    painter.restore();
}

void PreviewStrip::drawCaption(QPainter& painter, std::size_t index) const {
    const double scale = devicePixelRatioF();
    const QRect pixels = iconRect(index);
    painter.setPen(mixed(palette().color(QPalette::WindowText), palette().color(QPalette::Window), 0.8));
    QString caption = locale().toString(sizes.at(index));
    if (index + 1 == sizes.size())
        caption = tr("%1 px").arg(caption);
    const QFont font = PreviewLooks::captionFont(*this);
    painter.setFont(font);
    // A number stands before its unit in any direction of the window.
    painter.setLayoutDirection(Qt::LeftToRight);
    const int captionWidth = QFontMetrics(font).horizontalAdvance(caption);
    // The caption is centred below its icon, but stays inside of the strip.
    const double middle = (pixels.left() + pixels.width() / 2.0) / scale;
    const int left = qBound(0, qRound(middle - captionWidth / 2.0), qMax(0, width() - captionWidth));
    const int top = qCeil(tallest / scale) + 2 * stripMargin + captionGap;
    painter.drawText(QRect(left, top, captionWidth + 1, fontMetrics().height()),
                     Qt::AlignLeft | Qt::AlignAbsolute, caption);
}

void PreviewStrip::paintEvent(QPaintEvent* /*event*/) {
    if (m_areOld)
        render();
    QPainter painter(this);
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        drawIcon(painter, i);
        drawCaption(painter, i);
    }
}
