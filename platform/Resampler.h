#pragma once

#include <QImage>
#include <QSize>

/// What a target pixel takes from the samples around its place; stretched by the ratio where the source is
/// reduced, so that all that a pixel covers counts.
enum class ResampleFilter {
    Nearest,  ///< the one sample at its middle, at any ratio
    Linear,   ///< a triangle: bilinear interpolation
    Cubic,    ///< Catmull and Rom's cubic (Keys, "Cubic Convolution Interpolation", 1981, a = -1/2)
    Lanczos3, ///< three lobes (Duchon, "Lanczos Filtering in One and Two Dimensions", 1979)
};

/// How one axis of a source lies on the pixels of a target: all `sourceLength` samples are stretched over the
/// target's interval [origin, origin + length), in target pixels. Neither needs to be a whole number.
struct AxisMapping {
    int sourceLength = 0;
    double origin = 0;
    double length = 0;
    int targetLength = 0;
    ResampleFilter filter = ResampleFilter::Lanczos3;

    /// Source samples per target pixel.
    double ratio() const { return sourceLength / length; }
    bool operator==(const AxisMapping&) const = default;
    bool isIdentity() const { return origin == 0 && length == sourceLength && targetLength == sourceLength; }
};

/// Resamples `source` into a raster of x.targetLength × y.targetLength pixels with the filters of both
/// axes, one after the other. Both rasters are RGBA8888_Premultiplied; the mappings' source lengths are the
/// source's size.
///
/// Taps beyond the source's edges are left out and the others make up for them, so edges keep their full
/// value; equal samples give exactly their value; a mapping that fills the target mirrors a mirrored source
/// to the byte; no colour sample exceeds its alpha. Null where memory is short. Mappings that leave all as it
/// is give `source` itself, whose pixels are shared until one of the two is changed.
QImage resampled(const QImage& source, const AxisMapping& x, const AxisMapping& y);

/// A source axis that fills the whole of a target axis.
AxisMapping fillingMapping(int sourceLength, int targetLength);

/// The whole of `source` at another size.
QImage stretched(const QImage& source, const QSize& size);
