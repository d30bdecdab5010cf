#pragma once

#include "base/Result.h"

#include <QImage>
#include <QSize>

/// The error where memory is short for that many pixels.
Error noMemoryForPixels(qint64 width, qint64 height);

/// The error for a picture without any.
Error noPixels();

/// A new raster, whose pixels have no values yet. EmptySize without a pixel, OutOfMemory.
Result<QImage> newRaster(const QSize& size, QImage::Format format);

/// Copies the pixels of `raster` where they are shared, so that they may be changed. OutOfMemory is the
/// only error; the raster is of no use then.
Result<Done> makeOwn(QImage& raster);
