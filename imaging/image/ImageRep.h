#pragma once

#include "base/Result.h"
#include "imaging/pixels/AxisMapping.h"

#include <QImage>
#include <QSize>

/// One form of a picture: samples of some size, or a drawing without one. Immutable once it is part of an
/// Image.
class ImageRep {
  public:
    virtual ~ImageRep() = default;

    /// The size in pixels; empty for a drawing, which has no size of its own.
    virtual QSize pixelSize() const = 0;

    /// The longest side of the icons that are drawn from this representation and no other.
    virtual int reservedSide() const { return 0; }

    /// The whole picture on a new raster of x.targetLength × y.targetLength pixels, stretched as the two
    /// mappings say (their source lengths are set here). RGBA8888_Premultiplied. Fails with OutOfMemory, or
    /// with the reason why it can't be drawn.
    virtual Result<QImage> rendered(AxisMapping x, AxisMapping y) const = 0;

  protected:
    ImageRep() = default;
    ImageRep(const ImageRep&) = default;
    ImageRep& operator=(const ImageRep&) = default;
};
