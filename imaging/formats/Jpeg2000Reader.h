#pragma once

#include "imaging/image/PictureReader.h"

#include <QByteArray>

/// Decodes a JPEG 2000 file or bare codestream (ISO/IEC 15444-1) of grey or RGB components, with or without
/// alpha, as icns elements hold them. Components of different sizes and YCC colours are refused.
Result<DecodedPicture> readJpeg2000(const QByteArray& bytes);
