#pragma once

#include "base/Color.h"

#include <QImage>

/// Lays `raster` (RGBA8888_Premultiplied, whose pixels are not shared) on an opaque colour: each pixel
/// becomes opaque. The alpha of `color` is not looked at.
void layOnGround(QImage& raster, const Color& color);
