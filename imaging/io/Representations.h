#pragma once

#include "base/Result.h"
#include "imaging/image/BitmapImageRep.h"
#include "imaging/image/Image.h"
#include "imaging/png/PngStore.h"

#include <QByteArray>

#include <memory>

/// Images and bitmaps as the bytes of files, and back.

/// The largest bitmap of `image` as an uncompressed TIFF file. EmptySize where it has no bitmap, OutOfMemory.
Result<QByteArray> TIFFRepresentation(const Image& image);

/// The first picture in `data`, of any format that ImageSource reads. Fails as ImageSource does.
Result<std::unique_ptr<BitmapImageRep>> imageRepWithData(const QByteArray& data);

/// File types of `representationUsingType`, with the platform's numbers.
enum class BitmapFileType { PNG = 4 };

/// `bitmap` as a file of `type`, by way of `pngs` if there is one: of the best effort it may have fewer
/// channels and bits. EmptySize where it has no pixels, OutOfMemory.
Result<QByteArray> representationUsingType(const BitmapImageRep& bitmap, BitmapFileType type,
                                           PngStore* pngs = nullptr);
