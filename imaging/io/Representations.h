#pragma once

#include "imaging/image/BitmapImageRep.h"
#include "imaging/image/Image.h"

#include <QByteArray>

#include <memory>

/// Images and bitmaps as the bytes of files, and back.

/// The largest bitmap of `image` as an uncompressed TIFF file. Empty where it has none or memory is short.
QByteArray TIFFRepresentation(const Image& image);

/// The first picture in `data`, of any format that ImageSource reads. Null where it can't be read.
std::unique_ptr<BitmapImageRep> imageRepWithData(const QByteArray& data);

/// File types of `representationUsingType`, with the platform's numbers.
enum class BitmapFileType { PNG = 4 };

/// `bitmap` as a file of `type`. Empty where it has no pixels or memory is short.
QByteArray representationUsingType(const BitmapImageRep& bitmap, BitmapFileType type);
