#pragma once

#include "imaging/pixels/AxisMapping.h"

#include <QImage>
#include <QSize>

/// Resamples `source` into a raster of x.targetLength × y.targetLength pixels with the filters of both
/// axes, one after the other. Both rasters are RGBA8888_Premultiplied; the mappings' source lengths are the
/// source's size.
///
/// Taps beyond the source's edges are left out and the others make up for them, so edges keep their full
/// value; equal samples give exactly their value; a mapping that fills the target mirrors a mirrored source
/// to the byte; no colour sample exceeds its alpha. Null where memory is short. Mappings that leave all as it
/// is give `source` itself, whose pixels are shared until one of the two is changed.
QImage resampled(const QImage& source, const AxisMapping& x, const AxisMapping& y);

/// The whole of `source` at another size.
QImage stretched(const QImage& source, const QSize& size);
