#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QImage>

/// `raster` (RGBA8888_Premultiplied) as a BMP file with the version 5 header (Windows GDI, BITMAPV5HEADER):
/// 32 bits a pixel, straight colours with alpha, by bit fields, sRGB, rows from the bottom. EmptySize where
/// there are no pixels, TooLarge where the file would have more than 2147483647 bytes, OutOfMemory.
Result<QByteArray> encodeBmp(const QImage& raster);
