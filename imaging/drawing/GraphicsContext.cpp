#include "imaging/drawing/GraphicsContext.h"

#include "base/ShortMemory.h"
#include "base/StageTimes.h"
#include "imaging/image/BitmapImageRep.h"
#include "imaging/pixels/Raster.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>

namespace {

constexpr double noise = 1e-6;

/// `value`, or the nearest whole number where the two differ by rounding noise alone.
double snapped(double value) {
    const double whole = std::round(value);
    return std::abs(value - whole) <= noise ? whole : value;
}

std::uint8_t toByte(double value) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 255.0)));
}

void scalePixel(std::uint8_t* pixel, double factor) {
    for (int i = 0; i < 4; ++i)
        pixel[i] = toByte(pixel[i] * factor);
}

/// One axis of a rectangle on the raster: its exact place and the pixels that it touches.
struct Span {
    double from;
    double to;
    int begin;
    int end;

    int length() const { return end - begin; }
    /// The covered part of pixel `i` of the raster.
    double coverage(int i) const { return std::min(to, i + 1.0) - std::max(from, static_cast<double>(i)); }
    AxisMapping mapping() const { return {0, from - begin, to - from, length()}; }
};

Span spanOf(double from, double to, int limit) {
    Span span{snapped(from), snapped(to), 0, 0};
    span.begin = static_cast<int>(std::clamp(std::floor(span.from), 0.0, static_cast<double>(limit)));
    span.end = static_cast<int>(std::clamp(std::ceil(span.to), 0.0, static_cast<double>(limit)));
    return span;
}

} // namespace

struct GraphicsContext::DeviceRect {
    Span x;
    Span y;

    bool isEmpty() const { return x.length() <= 0 || y.length() <= 0; }
    /// Whether the rectangle covers each pixel that it touches in full.
    bool isWhole() const { return x.from == x.begin && x.to == x.end && y.from == y.begin && y.to == y.end; }
};

double GraphicsContext::pixelEdge(double points, int scale) {
    return std::ceil(points * scale - noise);
}

Result<QSize> GraphicsContext::pixelSize(const QSizeF& size, int scale) {
    const double width = pixelEdge(size.width(), scale);
    const double height = pixelEdge(size.height(), scale);
    // Comparisons with NaN are false, so a size that is not a number does not fit.
    if (!(width >= 1) || !(height >= 1))
        return noPixels();
    if (!(width * height <= static_cast<double>(maximumPixels)))
        return Error{ErrorCode::TooLarge,
                     QStringLiteral("the picture has more than %1 pixels").arg(maximumPixels)};
    return QSize(static_cast<int>(width), static_cast<int>(height));
}

Result<GraphicsContext> GraphicsContext::create(const QSizeF& size, int scale) {
    const Result<QSize> pixels = pixelSize(size, scale);
    if (!pixels)
        return pixels.error();
    GraphicsContext context(size, scale, *pixels);
    const QRectF bounds(QPointF(0, 0), size);
    if (!context.deviceRect(bounds).isWhole()) {
        if (const Result<Done> clipped = context.addClip(Path::bezierPathWithRect(bounds)); !clipped)
            return clipped.error();
    }
    return context;
}

/// Makes the raster's pixels, transparent at first, or copies them where they are shared.
Result<Done> GraphicsContext::makeRaster() {
    if (!m_raster.isNull())
        return makeOwn(m_raster);
    Result<QImage> raster = newRaster(m_pixelSize, QImage::Format_RGBA8888_Premultiplied);
    if (!raster)
        return raster.error();
    m_raster = std::move(*raster);
    m_raster.fill(0);
    return Done{};
}

GraphicsContext::DeviceRect GraphicsContext::deviceRect(const QRectF& rect) const {
    const double bottom = m_pixelSize.height() - rect.top() * m_scale;
    return {spanOf(rect.left() * m_scale, rect.right() * m_scale, m_pixelSize.width()),
            spanOf(bottom - rect.height() * m_scale, bottom, m_pixelSize.height())};
}

CoverageMask GraphicsContext::coverage(const Path& path, double offset) const {
    const DeviceRect device = deviceRect(path.bounds());
    const QRectF bounds(QPointF(device.x.from, device.y.from), QPointF(device.x.to, device.y.to));
    const bool symmetric = device.x.from + device.x.to == m_pixelSize.width() &&
                           device.y.from + device.y.to == m_pixelSize.height();
    const std::vector<QPointF> outline =
        offsetOutline(bounds, path.xRadius() * m_scale, path.yRadius() * m_scale, offset * m_scale);
    return CoverageMask::ofConvexPolygon(outline, m_pixelSize.width(), m_pixelSize.height(), symmetric);
}

Result<Done> GraphicsContext::addClip(const Path& path) {
    return unlessMemoryIsShort([&] {
        m_clip = coverage(path, 0);
        m_clipBounds = path.bounds();
    });
}

/// Multiplies `layer` by the clip's coverage. The layer's top left pixel lies at (left, top) of the raster.
void GraphicsContext::applyClip(QImage& layer, int left, int top) const {
    for (int y = 0; y < layer.height(); ++y) {
        std::uint8_t* pixels = layer.scanLine(y);
        const CoverageMask::Row& row = m_clip->row(top + y);
        const int fullBegin = std::clamp(row.fullBegin - left, 0, layer.width());
        const int fullEnd = std::clamp(row.fullEnd - left, fullBegin, layer.width());
        const auto scaleSpan = [&](int begin, int end) {
            for (int x = begin; x < end; ++x)
                scalePixel(pixels + 4 * static_cast<std::ptrdiff_t>(x), m_clip->at(row, left + x));
        };
        scaleSpan(0, fullBegin);
        scaleSpan(fullEnd, layer.width());
    }
}

/// Multiplies each pixel of `layer` by the part of it that `device` covers.
void GraphicsContext::applyEdges(QImage& layer, const DeviceRect& device) {
    for (int y = 0; y < layer.height(); ++y) {
        const double vertical = std::min(1.0, device.y.coverage(device.y.begin + y));
        std::uint8_t* pixels = layer.scanLine(y);
        for (int x = 0; x < layer.width(); ++x, pixels += 4) {
            const double horizontal = std::min(1.0, device.x.coverage(device.x.begin + x));
            if (horizontal * vertical < 1)
                scalePixel(pixels, horizontal * vertical);
        }
    }
}

void GraphicsContext::compositeOver(const QImage& layer, int left, int top) {
    const int width = layer.width();
    for (int y = 0; y < layer.height(); ++y) {
        const std::uint8_t* from = layer.constScanLine(y);
        std::uint8_t* to = m_raster.scanLine(top + y) + 4 * static_cast<std::ptrdiff_t>(left);
        for (int x = 0; x < width; ++x, from += 4, to += 4) {
            const int rest = 255 - from[3];
            // What most pixels are.
            if (rest == 0 || to[3] == 0) {
                std::copy_n(from, 4, to);
                continue;
            }
            for (int i = 0; i < 4; ++i)
                to[i] = static_cast<std::uint8_t>(std::min(255, from[i] + (to[i] * rest + 127) / 255));
        }
    }
}

Result<Done> GraphicsContext::drawImage(const Image& image, const QRectF& rect) {
    const DeviceRect device = deviceRect(rect);
    const Result<const ImageRep*> best =
        unlessMemoryIsShort([&] { return image.bestRepresentation(rect.size() * m_scale); });
    if (!best)
        return best.error();
    if (device.isEmpty() || *best == nullptr)
        return Done{};
    AxisMapping x = device.x.mapping();
    AxisMapping y = device.y.mapping();
    x.filter = y.filter = m_imageInterpolation;
    const auto reduced = [&] {
        const StageTimes::Timer timer(Stage::Reduce);
        return (*best)->rendered(x, y);
    };
    Result<QImage> layer = reduced();
    if (!layer)
        return layer.error();
    // Where the rectangle contains the clip, the clip alone makes the edge.
    const bool clipDecides = m_clip && rect.contains(m_clipBounds);
    const bool cutsPixels = !clipDecides && !device.isWhole();
    if (cutsPixels || m_clip) {
        if (Result<Done> own = makeOwn(*layer); !own)
            return own;
    }
    if (cutsPixels)
        applyEdges(*layer, device);
    if (m_clip)
        applyClip(*layer, device.x.begin, device.y.begin);
    if (m_raster.isNull() && layer->size() == m_pixelSize) {
        m_raster = std::move(*layer); // source over an empty raster
        return Done{};
    }
    if (Result<Done> made = makeRaster(); !made)
        return made;
    compositeOver(*layer, device.x.begin, device.y.begin);
    return Done{};
}

Result<Done> GraphicsContext::stroke(const Path& path, const Color& color) {
    if (!(path.lineWidth() > 0) || !(color.alpha > 0))
        return Done{};
    if (Result<Done> made = makeRaster(); !made)
        return made;
    // The stroke of a convex outline lies between two outlines: half the line width outside of it, and half
    // the line width inside.
    return unlessMemoryIsShort([&] {
        strokeRows(coverage(path, path.lineWidth() / 2), coverage(path, -path.lineWidth() / 2), color);
    });
}

void GraphicsContext::strokeRows(const CoverageMask& outer, const CoverageMask& inner, const Color& color) {
    const double alpha = std::min(color.alpha, 1.0);
    const double source[4] = {255 * color.red, 255 * color.green, 255 * color.blue, 255};
    for (int y = 0; y < m_pixelSize.height(); ++y) {
        const CoverageMask::Row& outerRow = outer.row(y);
        const CoverageMask::Row& innerRow = inner.row(y);
        std::uint8_t* pixels = m_raster.scanLine(y);
        for (int x = outerRow.begin; x < outerRow.end; ++x) {
            if (x == innerRow.fullBegin && innerRow.fullEnd > x)
                x = innerRow.fullEnd;
            if (x >= outerRow.end)
                break;
            double covered = outer.at(outerRow, x) - inner.at(innerRow, x);
            if (m_clip)
                covered *= m_clip->at(x, y);
            const double opacity = alpha * covered;
            std::uint8_t* pixel = pixels + 4 * static_cast<std::ptrdiff_t>(x);
            for (int i = 0; i < 4; ++i)
                pixel[i] = toByte(source[i] * opacity + pixel[i] * (1 - opacity));
        }
    }
}

Result<QImage> GraphicsContext::raster() {
    if (m_raster.isNull()) {
        if (const Result<Done> made = makeRaster(); !made)
            return made.error();
    }
    return m_raster;
}

Result<Image> GraphicsContext::image() {
    const Result<QImage> drawn = raster();
    if (!drawn)
        return drawn.error();
    return unlessMemoryIsShort([&] {
        Image image(m_size);
        image.addRepresentation(std::make_shared<BitmapImageRep>(*drawn));
        return image;
    });
}

Result<QImage> drawnRaster(const Image& image, const QSizeF& pixels) {
    Result<GraphicsContext> context = GraphicsContext::create(pixels, 1);
    if (!context)
        return context.error();
    if (const Result<Done> drawn = context->drawImage(image, QRectF(QPointF(0, 0), pixels)); !drawn)
        return drawn.error();
    return context->raster();
}
