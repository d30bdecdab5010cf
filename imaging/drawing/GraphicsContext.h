#pragma once

#include "base/Color.h"
#include "imaging/drawing/Path.h"
#include "imaging/image/Image.h"
#include "imaging/image/PictureReader.h"

#include <QImage>
#include <QRectF>
#include <QSizeF>

#include <optional>

/// A transparent picture that is being drawn. Coordinates are points with the origin in the lower left corner
/// and y upward; a point is `scale` pixels wide. Where a side has a fraction of a pixel the raster rounds up,
/// the picture stands on its lower left corner, and the pixels that it reaches into only in part are covered
/// in part.
class GraphicsContext {
  public:
    /// The most pixels that a raster may have: as many as a picture.
    static constexpr qint64 maximumPixels = PictureReader::maximumPixels;

    /// The pixels that a side of `points` needs: up to the next whole one, but for rounding noise below 10⁻⁶.
    static double pixelEdge(double points, int scale);

    GraphicsContext(const QSizeF& size, int scale);

    /// Without a raster nothing is drawn: the size is empty, not a number, or has more pixels than the limit.
    /// It is lost where memory is short or a picture can't be drawn.
    bool hasRaster() const { return !m_pixelSize.isEmpty(); }

    /// What pictures are resampled with from here on.
    ResampleFilter imageInterpolation() const { return m_imageInterpolation; }
    void setImageInterpolation(ResampleFilter filter) { m_imageInterpolation = filter; }

    /// From here on everything is drawn through the inside of `path`, antialiased. The path lies inside the
    /// picture, and takes the place of an earlier one.
    void addClip(const Path& path);

    /// The whole of `image` stretched into `rect`, source over, antialiased where an edge of `rect` cuts a
    /// pixel.
    void drawImage(const Image& image, const QRectF& rect);

    /// The outline of `path` in `color`, source over.
    void stroke(const Path& path, const Color& color);

    /// What was drawn: an image of the context's size with the raster as its one representation, or none.
    Image image();

  private:
    struct DeviceRect;
    DeviceRect deviceRect(const QRectF& rect) const;
    CoverageMask coverage(const Path& path, double offset) const;
    void applyClip(QImage& layer, int left, int top) const;
    static void applyEdges(QImage& layer, const DeviceRect& device);
    void compositeOver(const QImage& layer, int left, int top);
    bool makeRaster();
    void loseRaster();

    QSizeF m_size;
    int m_scale;
    QSize m_pixelSize; ///< empty where there is no raster
    QImage m_raster;   ///< null as long as nothing is drawn
    ResampleFilter m_imageInterpolation = ResampleFilter::Lanczos3;
    std::optional<CoverageMask> m_clip; ///< none where all pixels are drawn on in full
    QRectF m_clipBounds;
};
