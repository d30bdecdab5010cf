#pragma once

#include "imaging/image/PictureReader.h"

#include <QByteArray>

/// Decodes the first frame of a GIF file (GIF87a, GIF89a) on its canvas. A frame that breaks off is an error.
Result<DecodedPicture> readGif(const QByteArray& bytes);
