#include "platform/TiffWriter.h"

#include "platform/TiffStream.h"

#include <cstdint>
#include <new>

namespace {

QByteArray file(const QImage& raster) {
    constexpr qsizetype directoryBytes = 1024;
    TiffStream stream(raster.sizeInBytes() + directoryBytes);
    TIFF* tiff = stream.handle();
    if (tiff == nullptr)
        return {};
    const std::uint16_t associatedAlpha = EXTRASAMPLE_ASSOCALPHA;
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(raster.width()));
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(raster.height()));
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 4);
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &associatedAlpha);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(raster.height()));
    // Nothing to encode: the strip goes in as it is. Rows of 4-byte pixels have no padding. libtiff does not
    // write to it.
    void* samples = const_cast<uchar*>(raster.constBits()); // NOLINT(cppcoreguidelines-pro-type-const-cast)
    if (TIFFWriteRawStrip(tiff, 0, samples, raster.sizeInBytes()) != raster.sizeInBytes())
        return {};
    QByteArray tiffFile = stream.close();
    return stream.error().isEmpty() ? tiffFile : QByteArray();
}

} // namespace

QByteArray encodeTiff(const QImage& raster) {
    if (raster.isNull())
        return {};
    try {
        return file(raster);
    } catch (const std::bad_alloc&) {
        return {};
    }
}
