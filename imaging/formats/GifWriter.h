#pragma once

#include <QByteArray>
#include <QImage>

/// `raster` (RGBA8888_Premultiplied) as a GIF 89a file of one frame, with the colours of `indexedPicture`.
/// Empty where there are no pixels, more than 65535 in a row or column, or memory is short.
QByteArray encodeGif(const QImage& raster);
