#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QImage>

/// `raster` (RGBA8888_Premultiplied) as a GIF 89a file of one frame, with the colours of `indexedPicture`.
/// EmptySize where there are no pixels, TooLarge for more than 65535 in a row or column, OutOfMemory.
Result<QByteArray> encodeGif(const QImage& raster);
