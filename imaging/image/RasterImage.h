#pragma once

#include <QByteArray>

/// Where the alpha of a pixel is, and whether the colours are multiplied by it. The values are those of the
/// platform's raster images.
enum class AlphaInfo {
    None = 0,
    PremultipliedLast = 1,
    PremultipliedFirst = 2,
    Last = 3,
    First = 4,
    NoneSkipLast = 5,
    NoneSkipFirst = 6,
};

/// A bitmap in the form that drawing uses. Rows come from the top, without padding. Pixels of 32 bits are
/// little-endian words: R, G, B, A are stored as A, B, G, R, and A, R, G, B as B, G, R, A. All other pixels
/// are stored unchanged.
struct RasterImage {
    int width = 0;
    int height = 0;
    AlphaInfo alphaInfo = AlphaInfo::None;
    QByteArray bytes;
};
