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

/// A bitmap as drawing has it: packed rows from the top; pixels of 32 bits are words of little-endian order,
/// so that R, G, B, A stand as A, B, G, R in memory and A, R, G, B as B, G, R, A. All others stand as they
/// are.
struct RasterImage {
    int width = 0;
    int height = 0;
    AlphaInfo alphaInfo = AlphaInfo::None;
    QByteArray bytes;
};
