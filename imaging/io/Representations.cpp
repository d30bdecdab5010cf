#include "imaging/io/Representations.h"

#include "base/ShortMemory.h"
#include "imaging/formats/TiffWriter.h"
#include "imaging/io/ImageSource.h"
#include "imaging/png/PngWriter.h"

#include <utility>

Result<QByteArray> TIFFRepresentation(const Image& image) {
    const Result<QImage> raster = image.largestRaster();
    if (!raster)
        return raster.error();
    return encodeTiff(*raster);
}

Result<std::unique_ptr<BitmapImageRep>> imageRepWithData(const QByteArray& data) {
    Result<DecodedPicture> decoded = ImageSource::decode(data);
    if (!decoded)
        return decoded.error();
    return unlessMemoryIsShort([&] { return std::make_unique<BitmapImageRep>(std::move(decoded->raster)); });
}

Result<QByteArray> representationUsingType(const BitmapImageRep& bitmap, BitmapFileType type,
                                           PngStore* pngs) {
    const Result<QImage> raster = bitmap.raster();
    if (!raster)
        return raster.error();
    switch (type) {
    case BitmapFileType::PNG:
        if (pngs == nullptr)
            return encodePng(*raster);
        return pngs->encoded(*raster,
                             pngs->effort() == PngEffort::Best ? PngChannels::Fewest : PngChannels::Rgba);
    }
    return Error{ErrorCode::Unsupported, QStringLiteral("files of this type are not written here")};
}
