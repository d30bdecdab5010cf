#pragma once

#include <QByteArray>
#include <QImage>

/// `raster` (RGBA8888_Premultiplied) as a TIFF 6.0 file: one uncompressed strip of RGBA samples, 8 bits each,
/// with associated alpha. Empty where there are no pixels or memory is short.
QByteArray encodeTiff(const QImage& raster);
