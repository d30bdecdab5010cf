#pragma once

#include "imaging/image/PictureReader.h"
#include "imaging/pixels/ReducedCopies.h"

#include <QByteArray>

/// Decodes a PNG file (ISO/IEC 15948) of any colour type, depth and interlacing, with its tRNS, iCCP, sRGB,
/// gAMA, cHRM and eXIf chunks. Damaged where the file is broken or ends before IEND, or its pixel data are
/// incomplete; TooLarge beyond the limit of pixels; OutOfMemory. With `renders` the raster may be a reduced
/// copy: the largest that one of the renders draws from.
Result<DecodedPicture> readPng(const QByteArray& bytes, const ReducedCopies::Renders& renders = std::nullopt);
