#pragma once

#include "base/ShortMemory.h"
#include "imaging/pixels/Raster.h"

#include <QByteArray>
#include <QImage>

/// The error for a picture with more pixels in a row or column than its format holds.
inline Error sideTooLong(int longest) {
    return {ErrorCode::TooLarge,
            QStringLiteral("this format holds no more than %1 pixels in a row or column").arg(longest)};
}

/// Calls `encode` and returns its file. EmptySize where `raster` has no pixels, OutOfMemory where memory is
/// short in `encode`.
template <typename Encode>
Result<QByteArray> encodedPicture(const QImage& raster, Encode encode) {
    if (raster.isNull())
        return noPixels();
    return unlessMemoryIsShort(encode);
}
