#pragma once

#include <QByteArray>
#include <QImage>

/// `raster` (RGBA8888_Premultiplied) as a BMP file with the version 5 header (Windows GDI, BITMAPV5HEADER):
/// 32 bits a pixel, straight colours with alpha, by bit fields, sRGB, rows from the bottom. Empty where there
/// are no pixels, more bytes than 32 bits can tell, or memory is short.
QByteArray encodeBmp(const QImage& raster);
