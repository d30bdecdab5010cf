#pragma once

#include "imaging/image/PictureReader.h"
#include "imaging/pixels/ReducedCopies.h"

#include <QByteArray>

/// Decodes a PNG file (ISO/IEC 15948) of any colour type, depth and interlacing, with its tRNS, iCCP, sRGB,
/// gAMA, cHRM and eXIf chunks. Everything up to IEND must be whole, the pixels' data to their end: a file
/// that breaks off is Damaged, like any that is broken. TooLarge beyond the limit of pixels, OutOfMemory.
/// With `renders` the raster may be the largest reduced copy that one of these draws from.
Result<DecodedPicture> readPng(const QByteArray& bytes, const ReducedCopies::Renders& renders = std::nullopt);
