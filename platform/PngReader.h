#pragma once

#include "platform/PictureReader.h"

#include <QByteArray>
#include <QSizeF>

#include <optional>

/// Decodes a PNG file (ISO/IEC 15948) of any colour type, depth and interlacing, with its tRNS, iCCP, sRGB,
/// gAMA, cHRM and eXIf chunks. Everything up to IEND must be whole: a file that breaks off is an error. With
/// `largestRender` the raster may be the reduced copy that renders of at most that many pixels draw from.
Result<DecodedPicture> readPng(const QByteArray& bytes,
                               const std::optional<QSizeF>& largestRender = std::nullopt);
