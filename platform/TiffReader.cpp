#include "platform/TiffReader.h"

#include "platform/RowConverter.h"
#include "platform/TiffStream.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

namespace {

Error failure(const TiffStream& stream) {
    const QString cause =
        stream.error().isEmpty() ? QStringLiteral("it can't be decoded") : QString::fromUtf8(stream.error());
    return PictureReader::damaged(QStringLiteral("TIFF"), cause);
}

template <typename T>
T field(TIFF* tiff, std::uint32_t tag, T fallback) {
    T value = fallback;
    return TIFFGetFieldDefaulted(tiff, tag, &value) != 0 ? value : fallback;
}

ColorProfile profileOf(TIFF* tiff, bool& wasRefused) {
    std::uint32_t length = 0;
    void* icc = nullptr;
    if (TIFFGetField(tiff, TIFFTAG_ICCPROFILE, &length, &icc) == 0 || icc == nullptr)
        return {};
    ColorProfile profile = ColorProfile::fromIcc(QByteArray(static_cast<const char*>(icc), length));
    wasRefused = !profile;
    return profile;
}

/// The layout of a file whose strips hold whole pixels of plain samples; none for all other kinds.
std::optional<SampleLayout> plainLayout(TIFF* tiff) {
    const auto bits = field<std::uint16_t>(tiff, TIFFTAG_BITSPERSAMPLE, 1);
    const auto samples = field<std::uint16_t>(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
    const auto format = field<std::uint16_t>(tiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
    const auto planes = field<std::uint16_t>(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    const auto photometric = field<std::uint16_t>(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
    const auto compression = field<std::uint16_t>(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    if (TIFFIsTiled(tiff) != 0 || (bits != 8 && bits != 16) || format != SAMPLEFORMAT_UINT ||
        planes != PLANARCONFIG_CONTIG || compression == COMPRESSION_JPEG || compression == COMPRESSION_OJPEG)
        return std::nullopt;
    SampleLayout layout;
    layout.bitsPerSample = bits;
    if (photometric == PHOTOMETRIC_MINISBLACK)
        layout.colors = SampleLayout::Colors::Grey;
    else if (photometric == PHOTOMETRIC_RGB)
        layout.colors = SampleLayout::Colors::RGB;
    else if (photometric == PHOTOMETRIC_SEPARATED &&
             field<std::uint16_t>(tiff, TIFFTAG_INKSET, INKSET_CMYK) == INKSET_CMYK)
        layout.colors = SampleLayout::Colors::CMYK;
    else
        return std::nullopt;
    if (samples == layout.colorCount())
        return layout;
    std::uint16_t extraCount = 0;
    std::uint16_t* extra = nullptr;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_EXTRASAMPLES, &extraCount, &extra);
    if (samples != layout.colorCount() + 1 || extraCount != 1 || extra == nullptr)
        return std::nullopt;
    layout.alpha = extra[0] == EXTRASAMPLE_ASSOCALPHA ? SampleLayout::Alpha::Premultiplied
                                                      : SampleLayout::Alpha::Straight;
    return layout;
}

/// Strip by strip; straight into the raster where the strip's rows are laid out as the raster's are.
Result<QImage> readPlain(TiffStream& stream, RowConverter& converter, const SampleLayout& layout,
                         QImage raster) {
    TIFF* tiff = stream.handle();
    const auto width = static_cast<tmsize_t>(raster.width());
    const tmsize_t rowBytes = width * layout.bytesPerPixel();
    if (TIFFScanlineSize64(tiff) != static_cast<std::uint64_t>(rowBytes))
        return failure(stream);
    const auto rowsPerStrip =
        static_cast<int>(std::min<std::uint32_t>(field<std::uint32_t>(tiff, TIFFTAG_ROWSPERSTRIP, 0xffffffff),
                                                 static_cast<std::uint32_t>(raster.height())));
    if (rowsPerStrip <= 0)
        return failure(stream);
    const bool inPlace = layout.bytesPerPixel() == 4;
    std::vector<std::uint8_t> buffer(inPlace ? 0 : static_cast<std::size_t>(rowBytes * rowsPerStrip));
    for (int y = 0; y < raster.height(); y += rowsPerStrip) {
        const int rows = std::min(rowsPerStrip, raster.height() - y);
        std::uint8_t* strip = inPlace ? raster.scanLine(y) : buffer.data();
        const tmsize_t wanted = rowBytes * rows;
        const std::uint32_t number = TIFFComputeStrip(tiff, static_cast<std::uint32_t>(y), 0);
        if (TIFFReadEncodedStrip(tiff, number, strip, wanted) != wanted)
            return failure(stream);
        for (int i = 0; i < rows; ++i)
            converter.convert(strip + i * rowBytes, raster.scanLine(y + i), raster.width());
    }
    return raster;
}

/// Every other kind, as the library's own RGBA: associated alpha, the first row of the file first.
Result<QImage> readAsRgba(TiffStream& stream, RowConverter& converter, QImage raster) {
    TIFF* tiff = stream.handle();
    char cause[1024] = {};
    TIFFRGBAImage decoder{};
    if (TIFFRGBAImageOK(tiff, cause) == 0 || TIFFRGBAImageBegin(&decoder, tiff, 1, cause) == 0)
        return PictureReader::damaged(QStringLiteral("TIFF"), QString::fromUtf8(cause));
    // Rows as the file has them: it is turned upright afterwards, like any other picture.
    decoder.req_orientation = decoder.orientation;
    const bool isWhole = TIFFRGBAImageGet(&decoder, reinterpret_cast<std::uint32_t*>(raster.bits()),
                                          decoder.width, decoder.height) != 0;
    TIFFRGBAImageEnd(&decoder);
    if (!isWhole)
        return failure(stream);
    for (int y = 0; y < raster.height(); ++y) {
        std::uint8_t* row = raster.scanLine(y);
        converter.convert(row, row, raster.width());
    }
    return raster;
}

} // namespace

Result<DecodedPicture> readTiff(const QByteArray& bytes) {
    TiffStream stream(bytes);
    TIFF* tiff = stream.handle();
    if (tiff == nullptr)
        return failure(stream);
    const auto width = field<std::uint32_t>(tiff, TIFFTAG_IMAGEWIDTH, 0);
    const auto height = field<std::uint32_t>(tiff, TIFFTAG_IMAGELENGTH, 0);
    Result<QImage> raster = PictureReader::newRaster(width, height);
    if (!raster)
        return raster.error();
    bool profileWasRefused = false;
    const ColorProfile profile = profileOf(tiff, profileWasRefused);
    const std::optional<SampleLayout> plain = plainLayout(tiff);
    const SampleLayout asRgba{SampleLayout::Colors::RGB, SampleLayout::Alpha::Premultiplied, 8, false};
    RowConverter converter(plain.value_or(asRgba), profile);
    Result<QImage> picture = plain ? readPlain(stream, converter, *plain, std::move(*raster))
                                   : readAsRgba(stream, converter, std::move(*raster));
    if (!picture)
        return picture.error();
    const auto orientation = field<std::uint16_t>(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    DecodedPicture decoded{PictureReader::upright(std::move(*picture), orientation), {}};
    if (profileWasRefused || converter.profileWasRefused())
        decoded.warnings << PictureReader::profileWarning();
    return decoded;
}
