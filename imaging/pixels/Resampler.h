#pragma once

#include "base/Result.h"
#include "imaging/pixels/AxisMapping.h"

#include <QImage>
#include <QSize>

/// Resamples `source` into a raster of x.targetLength × y.targetLength pixels with the filters of both axes,
/// one after the other. Both rasters are RGBA8888_Premultiplied; the mappings' source lengths are the
/// source's size.
///
/// Taps beyond the source's edges are left out and the others make up for them, so edges keep their full
/// value. Equal samples give exactly their value. A mapping whose middle is the target's mirrors a mirrored
/// source to the byte, with any filter but Nearest. No colour sample exceeds its alpha. Where both mappings
/// are the identity the result is `source` itself; the pixels are shared until one of the two is changed.
/// EmptySize where the target has no pixels, OutOfMemory.
Result<QImage> resampled(const QImage& source, const AxisMapping& x, const AxisMapping& y);

/// The whole of `source` stretched to `size` pixels. Fails as `resampled` does.
Result<QImage> stretched(const QImage& source, const QSize& size);
