#pragma once

#include "base/Color.h"
#include "imaging/drawing/Path.h"
#include "imaging/image/Image.h"
#include "imaging/image/PictureReader.h"

#include <QImage>
#include <QRectF>
#include <QSizeF>

#include <optional>

/// Draws a picture, which is transparent at first. Coordinates are points; the origin is the lower left
/// corner, and y points upward. A point is `scale` pixels wide. Where a side is not a whole number of pixels,
/// the raster rounds up. The picture starts at the raster's lower left corner, and covers the pixels at its
/// upper and right edges in part.
class GraphicsContext {
  public:
    /// A raster's limit in pixels: the same as a picture's.
    static constexpr qint64 maximumPixels = PictureReader::maximumPixels;

    /// How many pixels a side of `points` needs: points × scale, rounded up. Up to 10⁻⁶ above a whole number
    /// is rounding noise and does not count.
    static double pixelEdge(double points, int scale);

    /// The pixels of a picture of `size` points. EmptySize where that size is empty or not a number, TooLarge
    /// where it has more pixels than the limit.
    static Result<QSize> pixelSize(const QSizeF& size, int scale);

    /// A context for a picture of `size` points. Fails as `pixelSize` does, or with OutOfMemory.
    static Result<GraphicsContext> create(const QSizeF& size, int scale);

    // Each operation may fail with OutOfMemory. Half a picture is of no use, so the context is not used any
    // further then.

    /// The filter that resamples the pictures drawn from now on.
    ResampleFilter imageInterpolation() const { return m_imageInterpolation; }
    void setImageInterpolation(ResampleFilter filter) { m_imageInterpolation = filter; }

    /// Clips what is drawn from now on to the inside of `path`, antialiased. The path lies inside the
    /// picture, and replaces an earlier one.
    Result<Done> addClip(const Path& path);

    /// Draws the whole of `image` stretched into `rect`, source over, antialiased where an edge of `rect`
    /// cuts a pixel. Also fails where a drawing can't be drawn.
    Result<Done> drawImage(const Image& image, const QRectF& rect);

    /// Draws the outline of `path` in `color`, source over.
    Result<Done> stroke(const Path& path, const Color& color);

    /// What was drawn, as an image of the context's size. Its one representation is the raster.
    Result<Image> image();

    /// The raster alone, RGBA8888_Premultiplied.
    Result<QImage> raster();

  private:
    GraphicsContext(const QSizeF& size, int scale, const QSize& pixelSize)
        : m_size(size), m_scale(scale), m_pixelSize(pixelSize) {}

    struct DeviceRect;
    DeviceRect deviceRect(const QRectF& rect) const;
    CoverageMask coverage(const Path& path, double offset) const;
    void applyClip(QImage& layer, int left, int top) const;
    static void applyEdges(QImage& layer, const DeviceRect& device);
    void compositeOver(const QImage& layer, int left, int top);
    void strokeRows(const CoverageMask& outer, const CoverageMask& inner, const Color& color);
    Result<Done> makeRaster();

    QSizeF m_size;
    int m_scale;
    QSize m_pixelSize;
    QImage m_raster; ///< null as long as nothing is drawn
    ResampleFilter m_imageInterpolation = ResampleFilter::Lanczos3;
    std::optional<CoverageMask> m_clip; ///< empty where nothing is clipped
    QRectF m_clipBounds;
};

/// Draws the whole of `image` into a new raster of that size in pixels. Fails as GraphicsContext does.
Result<QImage> drawnRaster(const Image& image, const QSizeF& pixels);
