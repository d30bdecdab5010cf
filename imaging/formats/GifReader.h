#pragma once

#include "imaging/image/PictureReader.h"
#include "imaging/pixels/ReducedCopies.h"

#include <QByteArray>

/// Decodes the first frame of a GIF file (GIF87a, GIF89a) on its canvas. A frame that breaks off is an error.
/// With `renders` the raster may be the largest reduced copy that one of these draws from.
Result<DecodedPicture> readGif(const QByteArray& bytes, const ReducedCopies::Renders& renders = std::nullopt);
