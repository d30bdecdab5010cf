#include "imaging/drawing/Shadow.h"

#include "base/ShortMemory.h"
#include "imaging/pixels/Raster.h"

#include <QImage>
#include <QPainter>

#include <cmath>
#include <vector>

namespace {

/// The weights of a Gaussian from its middle to one side. The middle and both sides sum to 1.
std::vector<float> gaussian(double deviation) {
    const int reach = static_cast<int>(std::ceil(3 * deviation));
    std::vector<double> weights;
    weights.reserve(static_cast<std::size_t>(reach) + 1);
    double sum = 0;
    for (int i = 0; i <= reach; ++i) {
        weights.push_back(std::exp(-i * i / (2 * deviation * deviation)));
        sum += i == 0 ? weights.back() : 2 * weights.back();
    }
    std::vector<float> normal;
    normal.reserve(weights.size());
    for (const double weight : weights)
        normal.push_back(static_cast<float>(weight / sum));
    return normal;
}

/// A plane of coverage, with a margin around it as wide as the blur reaches.
class Plane {
  public:
    Plane(int width, int height, int margin)
        : m_width(width), m_height(height), m_margin(margin), m_values(stride() * rows(), 0.0F) {}

    float* at(int x, int y) {
        return m_values.data() + static_cast<std::size_t>(y + m_margin) * stride() +
               static_cast<std::size_t>(x + m_margin);
    }
    std::size_t stride() const { return size(m_width) + 2 * size(m_margin); }

    /// Blurs along one axis. Neighbours on that axis lie `step` values apart in memory.
    void blur(const std::vector<float>& weights, std::size_t step) {
        std::vector<float> row(static_cast<std::size_t>(m_width));
        std::vector<float> blurred(m_values.size(), 0.0F);
        // The pass along rows blurs the margin's rows too: the pass along columns reads them.
        for (int y = -m_margin; y < m_height + m_margin; ++y) {
            const bool isWithin = y >= 0 && y < m_height;
            if (step != 1 && !isWithin)
                continue;
            const float* middle = at(0, y);
            for (std::size_t x = 0; x < row.size(); ++x)
                row[x] = weights[0] * middle[x];
            for (std::size_t i = 1; i < weights.size(); ++i) {
                const float weight = weights[i];
                const float* before = middle - i * step;
                const float* after = middle + i * step;
                for (std::size_t x = 0; x < row.size(); ++x)
                    row[x] += weight * (before[x] + after[x]);
            }
            std::copy(row.begin(), row.end(), blurred.begin() + (at(0, y) - m_values.data()));
        }
        m_values.swap(blurred);
    }

  private:
    static std::size_t size(int length) { return static_cast<std::size_t>(length); }
    std::size_t rows() const { return size(m_height) + 2 * size(m_margin); }

    int m_width;
    int m_height;
    int m_margin;
    std::vector<float> m_values;
};

/// The blurred coverage of `shape` over `area`, in device pixels.
Result<QImage> blurredMask(const QPainterPath& shape, const QRect& area, double deviation) {
    const std::vector<float> weights = gaussian(deviation);
    const int margin = static_cast<int>(weights.size()) - 1;
    const QRect wide = area.adjusted(-margin, -margin, margin, margin);
    Result<QImage> mask = newRaster(wide.size(), QImage::Format_Alpha8);
    Result<QImage> blurred = newRaster(area.size(), QImage::Format_Alpha8);
    if (!mask || !blurred)
        return outOfMemory();
    mask->fill(0);
    QPainter painter(&*mask);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(-wide.topLeft());
    painter.fillPath(shape, Qt::black);
    painter.end();

    Plane plane(area.width(), area.height(), margin);
    for (int y = 0; y < wide.height(); ++y) {
        const uchar* from = mask->constScanLine(y);
        float* to = plane.at(-margin, y - margin);
        for (int x = 0; x < wide.width(); ++x)
            to[x] = from[x];
    }
    plane.blur(weights, 1);
    plane.blur(weights, plane.stride());

    for (int y = 0; y < area.height(); ++y) {
        const float* from = plane.at(0, y);
        uchar* to = blurred->scanLine(y);
        for (int x = 0; x < area.width(); ++x)
            to[x] = static_cast<uchar>(std::lround(std::min(from[x], 255.0F)));
    }
    return blurred;
}

QColor qcolor(const Color& color) {
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue), static_cast<float>(color.alpha));
}

Result<Done> drawn(QPainter& painter, const QPainterPath& shape, const Shadow& shadow,
                   const QPainterPath& clip) {
    const QTransform toDevice = painter.deviceTransform();
    const QPainterPath thrown = toDevice.map(shape.translated(shadow.offset));
    const QPainterPath deviceClip = toDevice.map(clip);
    const QRect area = deviceClip.boundingRect().toAlignedRect();
    if (area.isEmpty())
        return Done{};
    const double scale = std::sqrt(std::abs(toDevice.determinant()));
    const double deviation = shadow.blurRadius * scale / 2;

    Result<QImage> layer = newRaster(area.size(), QImage::Format_ARGB32_Premultiplied);
    if (!layer)
        return layer.error();
    layer->fill(0);
    QPainter onLayer(&*layer);
    onLayer.setRenderHint(QPainter::Antialiasing);
    if (deviation > 0) {
        const Result<QImage> mask = blurredMask(thrown, area, deviation);
        if (!mask)
            return mask.error();
        onLayer.drawImage(0, 0, *mask);
        onLayer.setCompositionMode(QPainter::CompositionMode_SourceIn);
        onLayer.fillRect(layer->rect(), qcolor(shadow.color));
    } else {
        onLayer.fillPath(thrown.translated(-area.topLeft()), qcolor(shadow.color));
    }
    QPainterPath outside;
    outside.addRect(layer->rect().adjusted(-1, -1, 1, 1));
    outside.addPath(deviceClip.translated(-area.topLeft()));
    onLayer.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    onLayer.fillPath(outside, Qt::black);
    onLayer.end();

    painter.save();
    painter.setTransform(toDevice.inverted(), true);
    painter.drawImage(area.topLeft(), *layer);
    painter.restore();
    return Done{};
}

} // namespace

Result<Done> drawShadow(QPainter& painter, const QPainterPath& shape, const Shadow& shadow,
                        const QPainterPath& clip) {
    return unlessMemoryIsShort([&] { return drawn(painter, shape, shadow, clip); });
}
