#pragma once

#include "platform/ImageRep.h"

#include <QByteArray>

#include <memory>

/// A bitmap: RGBA, 8 bits per sample, premultiplied, sRGB, rows from the top.
class BitmapImageRep final : public ImageRep {
  public:
    /// File types of `representationUsingType`.
    enum class FileType { PNG = 4 };

    /// Holds `raster`, converted to RGBA8888_Premultiplied where it is anything else.
    explicit BitmapImageRep(QImage raster);

    /// The first picture in `data`, of any format that ImageSource reads; null where it can't be read.
    static std::unique_ptr<BitmapImageRep> imageRepWithData(const QByteArray& data);

    QSize pixelSize() const override { return m_raster.size(); }
    QImage rendered(AxisMapping x, AxisMapping y) const override;

    const QImage& raster() const { return m_raster; }

    /// The bitmap as a file of `type`; empty where it can't be encoded (no pixels).
    QByteArray representationUsingType(FileType type) const;

  private:
    QImage m_raster;
};
