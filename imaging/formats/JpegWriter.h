#pragma once

#include <QByteArray>
#include <QImage>

/// `raster` (RGBA8888_Premultiplied) laid over white, as a baseline JPEG file (ISO/IEC 10918-1, JFIF) with
/// colour at half resolution and Huffman tables of its own. `quality` goes from 0 to 1. Empty where there are
/// no pixels, more than 65500 in a row or column, or memory is short.
QByteArray encodeJpeg(const QImage& raster, double quality);
