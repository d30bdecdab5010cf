#pragma once

/// How the source samples around a target pixel are weighed. Where the source is reduced, the filter is
/// stretched by the ratio, so every sample that the pixel covers counts.
enum class ResampleFilter {
    Nearest,  ///< the one sample at its middle, at any ratio
    Linear,   ///< a triangle: bilinear interpolation
    Cubic,    ///< Catmull and Rom's cubic (Keys, "Cubic Convolution Interpolation", 1981, a = -1/2)
    Lanczos3, ///< three lobes (Duchon, "Lanczos Filtering in One and Two Dimensions", 1979)
};

/// How one axis of a source lies on the pixels of a target: all `sourceLength` samples are stretched over the
/// target's interval [origin, origin + length), in target pixels. Origin and length need not be whole
/// numbers.
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

/// A source axis that fills the whole of a target axis.
constexpr AxisMapping fillingMapping(int sourceLength, int targetLength) {
    return {sourceLength, 0, static_cast<double>(targetLength), targetLength};
}
