#pragma once

#include "base/Result.h"

#include <QImage>
#include <QPoint>
#include <QSize>

/// The error where memory is short for that many pixels.
Error noMemoryForPixels(qint64 width, qint64 height);

/// The error for a picture without any.
Error noPixels();

/// A new raster, whose pixels have no values yet. EmptySize without a pixel, OutOfMemory.
Result<QImage> newRaster(const QSize& size, QImage::Format format);

/// A transparent raster of `size` with `part` at `place`, where all of it fits; `part` itself where it has
/// that size. `part` is RGBA8888_Premultiplied. Fails as `newRaster` does.
Result<QImage> placed(const QImage& part, const QPoint& place, const QSize& size);

/// Copies the pixels of `raster` where they are shared, so that they may be changed. OutOfMemory is the
/// only error; the raster is of no use then.
Result<Done> makeOwn(QImage& raster);
