#pragma once

#include "imaging/image/ImageRep.h"
#include "imaging/image/RasterImage.h"

#include <QByteArray>

#include <memory>

/// The shape of a bitmap's samples. The top row comes first.
struct BitmapLayout {
    int pixelsWide = 0;
    int pixelsHigh = 0;
    int bitsPerSample = 8;   ///< 1, 2, 4, 8 or 16
    int samplesPerPixel = 4; ///< 1 grey, 2 grey and alpha, 3 RGB, 4 RGB and another
    bool hasAlpha = true;    ///< whether the last (or first) sample is alpha
    bool isPlanar = false;   ///< each sample in a plane of its own, one plane after another
    bool isAlphaFirst = false;
    bool isPremultiplied = true;
    qsizetype bytesPerRow = 0; ///< 0: as many as the pixels need
    int bitsPerPixel = 0;      ///< 0: as many as the samples need; in a planar bitmap for one sample

    /// The bytes of all rows and planes.
    qsizetype byteCount() const;
};

/// A bitmap: samples of any shape. Pictures are drawn from bitmaps of RGBA, 8 bits per sample, premultiplied,
/// sRGB.
class BitmapImageRep : public ImageRep {
  public:
    /// Holds `raster`, which is RGBA8888_Premultiplied.
    explicit BitmapImageRep(QImage raster);

    /// A bitmap of the shape `layout` with an unchanged copy of `samples`, or with zeros where `samples` is
    /// empty. Malformed where the shape is impossible (a size that is not positive, rows too short for their
    /// pixels) or needs more bytes than there are; OutOfMemory.
    static Result<std::unique_ptr<BitmapImageRep>> initWithBitmapData(const BitmapLayout& layout,
                                                                      const QByteArray& samples = {});

    QSize pixelSize() const override { return {m_layout.pixelsWide, m_layout.pixelsHigh}; }
    Result<QImage> rendered(AxisMapping x, AxisMapping y) const override;

    /// The bitmap as RGBA8888_Premultiplied. OutOfMemory is the only error.
    Result<QImage> raster() const;

    const BitmapLayout& layout() const { return m_layout; }
    int pixelsWide() const { return m_layout.pixelsWide; }
    int pixelsHigh() const { return m_layout.pixelsHigh; }
    int bitsPerSample() const { return m_layout.bitsPerSample; }
    int samplesPerPixel() const { return m_layout.samplesPerPixel; }
    int bitsPerPixel() const { return m_layout.bitsPerPixel; }
    bool isPlanar() const { return m_layout.isPlanar; }
    qsizetype bytesPerRow() const { return m_layout.bytesPerRow; }

    /// The samples as they are stored.
    QByteArrayView bitmapData() const;

    /// The bitmap in the form that drawing uses. OutOfMemory is the only error.
    virtual Result<RasterImage> CGImage() const;

  protected:
    BitmapImageRep(const BitmapLayout& layout, QByteArray samples);

  private:
    int sample(int x, int y, int index) const;
    RasterImage packedImage() const;

    BitmapLayout m_layout;
    QByteArray m_samples; ///< empty where `m_raster` holds the bitmap
    QImage m_raster;
};
