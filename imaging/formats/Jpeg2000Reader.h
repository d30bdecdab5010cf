#pragma once

#include "imaging/image/PictureReader.h"

#include <QByteArray>

/// Decodes a JPEG 2000 file or bare codestream (ISO/IEC 15444-1) of grey or RGB components, with or without
/// alpha, as icns elements hold them. Components of different sizes and YCC colours are refused.
Result<DecodedPicture> readJpeg2000(const QByteArray& bytes);

/// The same with a raster of straight colours, RGBA8888: those that are stored also where pixels are
/// translucent.
Result<DecodedPicture> readStraightJpeg2000(const QByteArray& bytes);
