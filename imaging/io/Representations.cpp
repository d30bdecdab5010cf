#include "imaging/io/Representations.h"

#include "imaging/formats/TiffWriter.h"
#include "imaging/io/ImageSource.h"
#include "imaging/png/PngWriter.h"

#include <utility>

QByteArray TIFFRepresentation(const Image& image) {
    return encodeTiff(image.largestRaster());
}

std::unique_ptr<BitmapImageRep> imageRepWithData(const QByteArray& data) {
    Result<DecodedPicture> decoded = ImageSource::decode(data);
    if (!decoded)
        return nullptr;
    return std::make_unique<BitmapImageRep>(std::move(decoded->raster));
}

QByteArray representationUsingType(const BitmapImageRep& bitmap, BitmapFileType type) {
    switch (type) {
    case BitmapFileType::PNG:
        return encodePng(bitmap.raster());
    }
    return {};
}
