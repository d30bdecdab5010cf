#include "imaging/formats/TiffReader.h"

#include "imaging/formats/TiffStream.h"
#include "imaging/pixels/Premultiplication.h"
#include "imaging/pixels/RowConverter.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

namespace {

/// Why libtiff failed; `told` is what it told besides.
Error damagedTiff(const TiffStream& stream, const QByteArray& told = {}) {
    if (stream.isMemoryShort())
        return outOfMemory();
    const QByteArray& cause = told.isEmpty() ? stream.error() : told;
    return PictureReader::damaged(QStringLiteral("TIFF"), cause.isEmpty()
                                                              ? QStringLiteral("it can't be decoded")
                                                              : QString::fromUtf8(cause));
}

template <typename T>
T field(TIFF* tiff, std::uint32_t tag, T fallback) {
    T value = fallback;
    return TIFFGetFieldDefaulted(tiff, tag, &value) != 0 ? value : fallback;
}

Result<EmbeddedProfile> profileOf(TIFF* tiff) {
    std::uint32_t length = 0;
    void* icc = nullptr;
    if (TIFFGetField(tiff, TIFFTAG_ICCPROFILE, &length, &icc) == 0 || icc == nullptr)
        return EmbeddedProfile{};
    return ColorProfile::embedded(QByteArray(static_cast<const char*>(icc), length));
}

/// The orientation that the directory states, or else the XMP packet.
int orientationOf(TIFF* tiff) {
    std::uint16_t orientation = 0;
    if (TIFFGetField(tiff, TIFFTAG_ORIENTATION, &orientation) != 0)
        return orientation;
    std::uint32_t length = 0;
    void* xmp = nullptr;
    if (TIFFGetField(tiff, TIFFTAG_XMLPACKET, &length, &xmp) == 0 || xmp == nullptr)
        return ORIENTATION_TOPLEFT;
    return PictureReader::xmpOrientation(QByteArrayView(static_cast<const char*>(xmp), length))
        .value_or(ORIENTATION_TOPLEFT);
}

/// How a file stores plain samples: grey, RGB or CMYK of 8 or 16 bits. `plainKind` has no value for other
/// files.
struct PlainKind {
    SampleLayout layout;
    bool isTiled = false;
    bool hasPlanes = false; ///< each sample of the pixels has blocks of its own
};

std::optional<PlainKind> plainKind(TIFF* tiff) {
    const auto bits = field<std::uint16_t>(tiff, TIFFTAG_BITSPERSAMPLE, 1);
    const auto samples = field<std::uint16_t>(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
    const auto format = field<std::uint16_t>(tiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
    const auto photometric = field<std::uint16_t>(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
    const auto compression = field<std::uint16_t>(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    if ((bits != 8 && bits != 16) || format != SAMPLEFORMAT_UINT || compression == COMPRESSION_OJPEG)
        return std::nullopt;
    PlainKind kind;
    kind.isTiled = TIFFIsTiled(tiff) != 0;
    kind.hasPlanes = samples > 1 && field<std::uint16_t>(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) !=
                                        PLANARCONFIG_CONTIG;
    SampleLayout& layout = kind.layout;
    layout.bitsPerSample = bits;
    if (photometric == PHOTOMETRIC_MINISBLACK || photometric == PHOTOMETRIC_MINISWHITE) {
        layout.colors = SampleLayout::Colors::Grey;
        layout.inverted = photometric == PHOTOMETRIC_MINISWHITE;
    } else if (photometric == PHOTOMETRIC_RGB) {
        layout.colors = SampleLayout::Colors::RGB;
    } else if (photometric == PHOTOMETRIC_YCBCR && compression == COMPRESSION_JPEG && !kind.hasPlanes) {
        // The JPEG decoder returns RGB when it is asked to.
        layout.colors = SampleLayout::Colors::RGB;
        if (TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB) == 0)
            return std::nullopt;
    } else if (photometric == PHOTOMETRIC_SEPARATED &&
               field<std::uint16_t>(tiff, TIFFTAG_INKSET, INKSET_CMYK) == INKSET_CMYK) {
        layout.colors = SampleLayout::Colors::CMYK;
    } else {
        return std::nullopt;
    }
    if (samples == layout.colorCount())
        return kind;
    std::uint16_t extraCount = 0;
    std::uint16_t* extra = nullptr;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_EXTRASAMPLES, &extraCount, &extra);
    // Alpha with inverted grey would be ambiguous.
    if (samples != layout.colorCount() + 1 || extraCount != 1 || extra == nullptr || layout.inverted)
        return std::nullopt;
    layout.alpha = extra[0] == EXTRASAMPLE_ASSOCALPHA ? SampleLayout::Alpha::Premultiplied
                                                      : SampleLayout::Alpha::Straight;
    return kind;
}

/// Whether every strip or tile has a place and a length: libtiff would read a block without a place from the
/// file's start.
bool hasAllBlocks(TIFF* tiff) {
    const std::uint32_t count = TIFFIsTiled(tiff) != 0 ? TIFFNumberOfTiles(tiff) : TIFFNumberOfStrips(tiff);
    for (std::uint32_t block = 0; block < count; ++block) {
        if (TIFFGetStrileOffset(tiff, block) == 0 || TIFFGetStrileByteCount(tiff, block) == 0)
            return false;
    }
    return count > 0;
}

/// A raster that shares `bytes` instead of copying them. For premultiplied RGBA of 8 bits that is not
/// compressed, in strips that follow each other directly. Null for all other files.
QImage sharedRaster(TIFF* tiff, const PlainKind& kind, const QByteArray& bytes, int width, int height) {
    const bool isLikeRaster = kind.layout.colors == SampleLayout::Colors::RGB &&
                              kind.layout.alpha == SampleLayout::Alpha::Premultiplied &&
                              kind.layout.bitsPerSample == 8 && !kind.isTiled && !kind.hasPlanes;
    const bool isAsStored =
        field<std::uint16_t>(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE) == COMPRESSION_NONE &&
        field<std::uint16_t>(tiff, TIFFTAG_FILLORDER, FILLORDER_MSB2LSB) == FILLORDER_MSB2LSB;
    if (!isLikeRaster || !isAsStored)
        return {};
    const qsizetype row = 4 * qsizetype{width};
    const auto rowsOfStrip = static_cast<int>(std::min(
        field<std::uint32_t>(tiff, TIFFTAG_ROWSPERSTRIP, 0xffffffff), static_cast<std::uint32_t>(height)));
    const std::uint64_t begin = TIFFGetStrileOffset(tiff, 0);
    std::uint64_t end = begin;
    int y = 0;
    for (std::uint32_t strip = 0; strip < TIFFNumberOfStrips(tiff) && y < height; ++strip) {
        const int rows = std::min(rowsOfStrip, height - y);
        const auto size = static_cast<std::uint64_t>(row * rows);
        if (rows == 0 || TIFFGetStrileOffset(tiff, strip) != end ||
            TIFFGetStrileByteCount(tiff, strip) != size ||
            end + size > static_cast<std::uint64_t>(bytes.size()))
            return {};
        end += size;
        y += rows;
    }
    // A small part of a file is copied: to share it would keep the whole file in memory.
    if (y < height || end - begin < static_cast<std::uint64_t>(bytes.size()) / 2)
        return {};
    const auto* samples = reinterpret_cast<const std::uint8_t*>(bytes.constData()) + begin;
    constexpr std::uintptr_t alignment = 4;
    if (reinterpret_cast<std::uintptr_t>(samples) % alignment != 0 ||
        !isClampedToAlpha(samples, static_cast<std::size_t>(row / 4 * height)))
        return {};
    auto shared = std::make_unique<QByteArray>(bytes);
    const auto release = [](void* array) { delete static_cast<QByteArray*>(array); };
    QImage raster(samples, width, height, row, QImage::Format_RGBA8888_Premultiplied, release, shared.get());
    if (!raster.isNull())
        (void)shared.release(); // the raster deletes it from here on
    return raster;
}

/// Refuses a picture of `size` whose blocks, which are strips or tiles, take `bytes` each.
Result<Done> checkBlock(std::uint64_t bytes, QSize size) {
    constexpr std::uint64_t most = std::numeric_limits<qint64>::max();
    return PictureReader::checkWorkingMemory(static_cast<qint64>(std::min(bytes, most)), size.width(),
                                             size.height(),
                                             QStringLiteral("a TIFF picture in few strips or tiles"));
}

/// Reads plain samples block by block.
class BlockReader {
  public:
    BlockReader(TIFF* tiff, const PlainKind& kind, QImage& raster)
        : m_tiff(tiff),
          m_kind(kind),
          m_raster(raster),
          m_width(kind.isTiled ? tileSide(TIFFTAG_TILEWIDTH, raster.width()) : raster.width()),
          m_height(kind.isTiled ? tileSide(TIFFTAG_TILELENGTH, raster.height()) : rowsPerStrip()),
          m_rowBytes(tmsize_t{m_width} * kind.layout.bytesPerPixel()) {}

    /// Fails where a block can't be read in full.
    Result<Done> read(const TiffStream& stream, RowConverter& converter) {
        const tmsize_t libraryRow = m_kind.isTiled ? TIFFTileRowSize(m_tiff) : TIFFScanlineSize(m_tiff);
        const tmsize_t planes = m_kind.hasPlanes ? m_kind.layout.samplesPerPixel() : 1;
        if (m_width <= 0 || m_height <= 0 || libraryRow * planes != m_rowBytes)
            return damagedTiff(stream);
        // Full rows of four-byte pixels are read directly into the raster.
        const bool inPlace = !m_kind.isTiled && !m_kind.hasPlanes && m_kind.layout.bytesPerPixel() == 4;
        const tmsize_t blockBytes = inPlace ? 0 : m_rowBytes * m_height;
        if (Result<Done> allowed = checkBlock(static_cast<std::uint64_t>(blockBytes), m_raster.size());
            !allowed)
            return allowed;
        if (!inPlace)
            m_block.resize(static_cast<std::size_t>(m_rowBytes) * static_cast<std::size_t>(m_height));
        if (m_kind.hasPlanes)
            m_plane.resize(m_block.size() / static_cast<std::size_t>(planes));
        for (int top = 0; top < m_raster.height(); top += m_height) {
            for (int left = 0; left < m_raster.width(); left += m_width) {
                const int rows = std::min(m_height, m_raster.height() - top);
                const int columns = std::min(m_width, m_raster.width() - left);
                std::uint8_t* block = inPlace ? m_raster.scanLine(top) : m_block.data();
                if (!readBlock(left, top, rows, block))
                    return damagedTiff(stream);
                for (int row = 0; row < rows; ++row)
                    converter.convert(block + row * m_rowBytes,
                                      m_raster.scanLine(top + row) + 4 * tmsize_t{left}, columns);
            }
        }
        if (!stream.error().isEmpty())
            return damagedTiff(stream);
        return Done{};
    }

  private:
    /// A tile's side; 0 where it is far larger than the picture: only a hostile file has such tiles.
    int tileSide(std::uint32_t tag, int pictureSide) const {
        const int largest = std::max(pictureSide + 16, 1024);
        const auto side = field<std::uint32_t>(m_tiff, tag, 0);
        return side <= static_cast<std::uint32_t>(largest) ? static_cast<int>(side) : 0;
    }

    int rowsPerStrip() const {
        const auto rows = field<std::uint32_t>(m_tiff, TIFFTAG_ROWSPERSTRIP, 0xffffffff);
        return static_cast<int>(std::min(rows, static_cast<std::uint32_t>(m_raster.height())));
    }

    bool readBlock(int left, int top, int rows, std::uint8_t* out) {
        if (!m_kind.hasPlanes)
            return readSamples(left, top, rows, 0, out, m_rowBytes);
        const auto planes = static_cast<std::size_t>(m_kind.layout.samplesPerPixel());
        const auto sampleBytes = static_cast<std::size_t>(m_kind.layout.bitsPerSample / 8);
        const tmsize_t planeRow = m_rowBytes / static_cast<tmsize_t>(planes);
        for (std::size_t plane = 0; plane < planes; ++plane) {
            if (!readSamples(left, top, rows, static_cast<std::uint16_t>(plane), m_plane.data(), planeRow))
                return false;
            for (std::size_t i = 0; i < m_plane.size(); i += sampleBytes)
                std::memcpy(out + i * planes + plane * sampleBytes, m_plane.data() + i, sampleBytes);
        }
        return true;
    }

    bool readSamples(int left, int top, int rows, std::uint16_t plane, std::uint8_t* out,
                     tmsize_t rowBytes) const {
        const auto x = static_cast<std::uint32_t>(left);
        const auto y = static_cast<std::uint32_t>(top);
        if (m_kind.isTiled) {
            const tmsize_t bytes = rowBytes * m_height;
            return TIFFReadEncodedTile(m_tiff, TIFFComputeTile(m_tiff, x, y, 0, plane), out, bytes) == bytes;
        }
        const tmsize_t bytes = rowBytes * rows;
        return TIFFReadEncodedStrip(m_tiff, TIFFComputeStrip(m_tiff, y, plane), out, bytes) == bytes;
    }

    TIFF* m_tiff;
    const PlainKind& m_kind;
    QImage& m_raster;
    int m_width;
    int m_height;
    tmsize_t m_rowBytes;
    std::vector<std::uint8_t> m_block;
    std::vector<std::uint8_t> m_plane;
};

/// Reads all other kinds of samples. libtiff turns them into RGBA: associated alpha, rows in the file's
/// order.
Result<QImage> readAsRgba(TiffStream& stream, RowConverter& converter, QImage raster) {
    TIFF* tiff = stream.handle();
    char cause[1024] = {};
    TIFFRGBAImage decoder{};
    if (TIFFRGBAImageOK(tiff, cause) == 0)
        return Error{ErrorCode::Unsupported,
                     QStringLiteral("TIFF pictures of this kind are not read (%1); save it as PNG")
                         .arg(QString::fromUtf8(cause))};
    // libtiff unpacks a whole block of each plane before it turns the samples into pixels.
    const std::uint64_t planes =
        field<std::uint16_t>(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) == PLANARCONFIG_SEPARATE
            ? field<std::uint16_t>(tiff, TIFFTAG_SAMPLESPERPIXEL, 1)
            : 1;
    const std::uint64_t blockBytes = TIFFIsTiled(tiff) != 0 ? TIFFTileSize64(tiff) : TIFFStripSize64(tiff);
    if (const Result<Done> allowed = checkBlock(planes * blockBytes, raster.size()); !allowed)
        return allowed.error();
    if (TIFFRGBAImageBegin(&decoder, tiff, 1, cause) == 0)
        return damagedTiff(stream, cause);
    // Rows in the file's order: the picture is turned upright later, like any other.
    decoder.req_orientation = decoder.orientation;
    const bool isWhole = TIFFRGBAImageGet(&decoder, reinterpret_cast<std::uint32_t*>(raster.bits()),
                                          decoder.width, decoder.height) != 0;
    TIFFRGBAImageEnd(&decoder);
    if (!isWhole || !stream.error().isEmpty())
        return damagedTiff(stream);
    for (int y = 0; y < raster.height(); ++y) {
        std::uint8_t* row = raster.scanLine(y);
        converter.convert(row, row, raster.width());
    }
    return raster;
}

/// The pixels of a picture of `size`. `plain` is null where the samples are not plain.
Result<QImage> pixelsOf(TiffStream& stream, const PlainKind* plain, RowConverter& converter, QSize size) {
    Result<QImage> picture = PictureReader::newPicture(size.width(), size.height());
    if (!picture)
        return picture;
    if (plain == nullptr)
        return readAsRgba(stream, converter, std::move(*picture));
    const Result<Done> read = BlockReader(stream.handle(), *plain, *picture).read(stream, converter);
    if (!read)
        return read.error();
    return picture;
}

Result<DecodedPicture> decodedTiff(const QByteArray& bytes) {
    TiffStream stream(bytes);
    TIFF* tiff = stream.handle();
    if (tiff == nullptr)
        return damagedTiff(stream);
    const auto width = field<std::uint32_t>(tiff, TIFFTAG_IMAGEWIDTH, 0);
    const auto height = field<std::uint32_t>(tiff, TIFFTAG_IMAGELENGTH, 0);
    if (const Result<Done> allowed = PictureReader::checkSize(width, height); !allowed)
        return allowed.error();
    const QSize size(static_cast<int>(width), static_cast<int>(height));
    const Result<EmbeddedProfile> embedded = profileOf(tiff);
    if (!embedded)
        return embedded.error();
    const std::optional<PlainKind> plain = plainKind(tiff);
    const SampleLayout asRgba{SampleLayout::Colors::RGB, SampleLayout::Alpha::Premultiplied, 8, false};
    Result<RowConverter> converter =
        RowConverter::create(plain ? plain->layout : asRgba, embedded->profile, size.width());
    if (!converter)
        return converter.error();
    if (!hasAllBlocks(tiff) || !stream.error().isEmpty())
        return damagedTiff(stream);
    stream.beginPixels();
    Result<QImage> picture = plain && !embedded->profile
                                 ? sharedRaster(tiff, *plain, bytes, size.width(), size.height())
                                 : QImage();
    if (picture->isNull())
        picture = pixelsOf(stream, plain ? &*plain : nullptr, *converter, size);
    if (!picture)
        return picture.error();
    Result<QImage> upright = PictureReader::upright(std::move(*picture), orientationOf(tiff));
    if (!upright)
        return upright.error();
    DecodedPicture decoded{std::move(*upright), {}};
    if (embedded->isBroken || converter->profileWasRefused())
        decoded.warnings << PictureReader::profileWarning();
    if (TIFFLastDirectory(tiff) == 0)
        decoded.warnings << PictureReader::framesWarning();
    return decoded;
}

} // namespace

Result<DecodedPicture> readTiff(const QByteArray& bytes) {
    return unlessMemoryIsShort([&] { return decodedTiff(bytes); });
}
