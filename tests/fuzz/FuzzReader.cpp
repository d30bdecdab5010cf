// Gives any bytes to the reader of one format, READER in the header HEADER. The reader returns a picture of
// an allowed size, or an error with a sentence.

#include HEADER
#include "imaging/image/PictureReader.h"
#include "tests/fuzz/Require.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const Result<DecodedPicture> picture = READER(bytes);
    if (!picture) {
        require(!picture.error().sentence.isEmpty());
        return 0;
    }
    const QImage& raster = picture->raster;
    require(PictureReader::checkSize(raster.width(), raster.height()).operator bool());
    require(raster.format() == QImage::Format_RGBA8888_Premultiplied);
    // No colour exceeds its alpha.
    for (int y = 0; y < raster.height(); ++y) {
        const std::uint8_t* pixel = raster.constScanLine(y);
        for (int x = 0; x < raster.width(); ++x, pixel += 4)
            require(pixel[0] <= pixel[3] && pixel[1] <= pixel[3] && pixel[2] <= pixel[3]);
    }
    return 0;
}
