#pragma once

#include <QImage>
#include <QSize>

/// How one axis of a source lies on the pixels of a target: all `sourceLength` samples are stretched over the
/// target's interval [origin, origin + length), in target pixels. Neither needs to be a whole number.
struct AxisMapping {
    int sourceLength = 0;
    double origin = 0;
    double length = 0;
    int targetLength = 0;

    /// Source samples per target pixel.
    double ratio() const { return sourceLength / length; }
    bool isIdentity() const { return origin == 0 && length == sourceLength && targetLength == sourceLength; }
};

/// Resamples `source` into a new raster of x.targetLength × y.targetLength pixels with a separable Lanczos
/// filter of three lobes (Duchon, "Lanczos Filtering in One and Two Dimensions", 1979), stretched by the
/// ratio where it reduces. Both rasters are RGBA8888_Premultiplied; the mappings' source lengths are the
/// source's size.
///
/// Taps beyond the source's edges are left out and the others make up for them, so edges keep their full
/// value; equal samples give exactly their value; a mapping that fills the target mirrors a mirrored source
/// to the byte; no colour sample exceeds its alpha. Null where memory is short.
QImage resampledLanczos3(const QImage& source, const AxisMapping& x, const AxisMapping& y);

/// The whole of `source` at another size.
QImage stretched(const QImage& source, const QSize& size);
