#pragma once

#include "imaging/image/PictureReader.h"

#include <QByteArray>

/// Decodes the first picture of a TIFF 6.0 file and turns it upright. Reads grey, RGB and CMYK samples of 8
/// or 16 bits through their ICC profile and with either kind of alpha; also palettes, bit maps, YCbCr, tiles
/// and the other kinds that libtiff turns into RGBA. Data that break off or can't be decoded are an error.
Result<DecodedPicture> readTiff(const QByteArray& bytes);
