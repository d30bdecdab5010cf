#pragma once

#include "imaging/image/PictureReader.h"
#include "imaging/pixels/ReducedCopies.h"

#include <QByteArray>

/// Decodes a JPEG file (ISO/IEC 10918-1): grey, YCbCr, RGB, CMYK and YCCK, baseline and progressive, with its
/// ICC profile and EXIF orientation. Entropy-coded data that breaks off or can't be decoded is an error. With
/// `renders` the raster may be a reduced copy: the largest that one of the renders draws from.
Result<DecodedPicture> readJpeg(const QByteArray& bytes,
                                const ReducedCopies::Renders& renders = std::nullopt);
