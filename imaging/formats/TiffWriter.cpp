#include "imaging/formats/TiffWriter.h"

#include "imaging/formats/TiffStream.h"
#include "imaging/image/EncodedPicture.h"
#include "imaging/pixels/Premultiplication.h"

#include <cstdint>

namespace {

void describe(TIFF* tiff, const QImage& raster, std::uint16_t alphaKind) {
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(raster.width()));
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(raster.height()));
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 4);
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &alphaKind);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    // The format wants a resolution for RGB. The true one is not known.
    constexpr double pixelsPerInch = 72;
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, pixelsPerInch);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, pixelsPerInch);
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
}

Error cannotWrite(const TiffStream& stream) {
    if (stream.isMemoryShort())
        return outOfMemory();
    return {ErrorCode::Unsupported,
            QStringLiteral("the TIFF file can't be made (%1)").arg(QString::fromUtf8(stream.error()))};
}

Result<Done> writePlain(TiffStream& stream, const QImage& raster) {
    TIFF* tiff = stream.handle();
    describe(tiff, raster, EXTRASAMPLE_ASSOCALPHA);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(raster.height()));
    // The strip is written as it is, without encoding. Rows of 4-byte pixels have no padding. libtiff does
    // not change the samples.
    void* samples = const_cast<uchar*>(raster.constBits()); // NOLINT(cppcoreguidelines-pro-type-const-cast)
    if (TIFFWriteRawStrip(tiff, 0, samples, raster.sizeInBytes()) != raster.sizeInBytes())
        return cannotWrite(stream);
    return Done{};
}

Result<Done> writeCompressed(TiffStream& stream, const QImage& raster) {
    Result<QImage> straight = straightRaster(raster);
    if (!straight)
        return straight.error();
    TIFF* tiff = stream.handle();
    describe(tiff, raster, EXTRASAMPLE_UNASSALPHA);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 0));
    for (int y = 0; y < raster.height(); ++y) {
        if (TIFFWriteScanline(tiff, straight->scanLine(y), static_cast<std::uint32_t>(y), 0) != 1)
            return cannotWrite(stream);
    }
    return Done{};
}

Result<QByteArray> tiffFile(const QImage& raster, TiffCompression compression) {
    constexpr qsizetype directoryBytes = 1024;
    const bool isPlain = compression == TiffCompression::None;
    TiffStream stream(isPlain ? raster.sizeInBytes() + directoryBytes : directoryBytes);
    if (stream.handle() == nullptr)
        return cannotWrite(stream);
    const Result<Done> written = isPlain ? writePlain(stream, raster) : writeCompressed(stream, raster);
    if (!written)
        return written.error();
    QByteArray tiffFile = stream.close();
    if (!stream.error().isEmpty())
        return cannotWrite(stream);
    return tiffFile;
}

} // namespace

Result<QByteArray> encodeTiff(const QImage& raster, TiffCompression compression) {
    return encodedPicture(raster, [&] { return tiffFile(raster, compression); });
}
