#pragma once

#include <QByteArray>
#include <QImage>

#include <new>

/// What `encode` makes of `raster`; empty where there are no pixels or memory is short.
template <typename Encode>
QByteArray encodedPicture(const QImage& raster, Encode encode) {
    if (raster.isNull())
        return {};
    try {
        return encode();
    } catch (const std::bad_alloc&) {
        return {};
    }
}
