#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QImage>

/// `raster` (RGBA8888_Premultiplied) laid over white, as a baseline JPEG file (ISO/IEC 10918-1, JFIF) with
/// colour at half resolution and optimised Huffman tables. `quality` goes from 0 to 1. EmptySize where
/// there are no pixels, TooLarge for more than 65500 in a row or column, OutOfMemory.
Result<QByteArray> encodeJpeg(const QImage& raster, double quality);
