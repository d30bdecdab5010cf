#pragma once

#include "imaging/image/PictureReader.h"

#include <QByteArray>

/// Decode BMP and WebP (first frame) files through Qt's readers. Data that break off are an error.
Result<DecodedPicture> readBmp(const QByteArray& bytes);
Result<DecodedPicture> readWebP(const QByteArray& bytes);
