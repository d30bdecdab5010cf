#pragma once

#include "base/ShortMemory.h"

#include <QByteArray>
#include <QImage>

/// What `encode` makes of `raster`; empty where there are no pixels or memory is short.
template <typename Encode>
QByteArray encodedPicture(const QImage& raster, Encode encode) {
    return raster.isNull() ? QByteArray() : unlessMemoryIsShort(encode);
}
