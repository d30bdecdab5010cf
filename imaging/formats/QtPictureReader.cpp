#include "imaging/formats/QtPictureReader.h"

#include "base/ByteReader.h"
#include "base/LongWork.h"
#include "base/ShortMemory.h"
#include "imaging/pixels/Raster.h"
#include "imaging/pixels/RowConverter.h"

#include <QColorSpace>
#include <QIODevice>
#include <QImageReader>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <optional>

namespace {

/// A device that reads bytes in memory. It remembers whether a reader asked for more bytes than there are:
/// some of Qt's readers report success for a picture that breaks off.
class WatchedDevice final : public QIODevice {
  public:
    explicit WatchedDevice(const QByteArray& bytes) : m_bytes(bytes) { open(ReadOnly | Unbuffered); }

    bool ranShort() const { return m_ranShort; }
    qint64 size() const override { return m_bytes.size(); }

  protected:
    qint64 readData(char* data, qint64 maximum) override {
        LongWork::step();
        const qint64 rest = std::max<qint64>(0, m_bytes.size() - pos());
        const qint64 count = std::min(maximum, rest);
        m_ranShort = m_ranShort || count < maximum;
        std::memcpy(data, m_bytes.constData() + std::min<qint64>(pos(), m_bytes.size()),
                    static_cast<std::size_t>(count));
        return count;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

  private:
    const QByteArray& m_bytes;
    bool m_ranShort = false;
};

/// `image` converted to sRGB from `profile`. It is converted in bands: these are so small that Qt does not
/// use other threads. Pixels of four bytes are converted in place.
Result<DecodedPicture> converted(QImage image, const ColorProfile& profile) {
    constexpr int rasterDepth = 32;
    const bool isInPlace = image.depth() == rasterDepth;
    if (isInPlace) {
        if (const Result<Done> owned = makeOwn(image); !owned)
            return owned.error();
    }
    Result<QImage> raster =
        isInPlace ? Result<QImage>(QImage()) : PictureReader::newPicture(image.width(), image.height());
    if (!raster)
        return raster.error();
    QImage& target = isInPlace ? image : *raster;
    Result<RowConverter> converter = RowConverter::create(
        {SampleLayout::Colors::RGB, SampleLayout::Alpha::Straight, 8, false}, profile, image.width());
    if (!converter)
        return converter.error();
    constexpr int bandPixels = 60000;
    const int band = std::max(1, bandPixels / image.width());
    for (int y = 0; y < image.height(); y += band) {
        const int rows = std::min(band, image.height() - y);
        QImage part(image.constScanLine(y), image.width(), rows, image.bytesPerLine(), image.format());
        part.setColorTable(image.colorTable());
        const QImage straight = part.convertToFormat(QImage::Format_RGBA8888);
        if (straight.isNull())
            return noMemoryForPixels(image.width(), image.height());
        for (int i = 0; i < rows; ++i)
            converter->convert(straight.constScanLine(i), target.scanLine(y + i), image.width());
    }
    target.reinterpretAsFormat(QImage::Format_RGBA8888_Premultiplied);
    target.setColorSpace({}); // they are converted
    DecodedPicture picture{std::move(target), {}};
    if (converter->profileWasRefused())
        picture.warnings << PictureReader::profileWarning();
    return picture;
}

/// Sets Qt's limit for the memory of a picture, in MiB, as long as this object exists.
class QtAllocationLimit {
  public:
    explicit QtAllocationLimit(int limit) : m_earlier(QImageReader::allocationLimit()) {
        QImageReader::setAllocationLimit(limit);
    }
    ~QtAllocationLimit() { QImageReader::setAllocationLimit(m_earlier); }
    QtAllocationLimit(const QtAllocationLimit&) = delete;
    QtAllocationLimit& operator=(const QtAllocationLimit&) = delete;

  private:
    int m_earlier;
};

struct PixelSize {
    qint64 width;
    qint64 height;
};

struct QtPicture {
    QImage image;
    bool ranShort = false;
    bool hasFrames = false; ///< more than one
};

/// Qt's limit while a picture is read, in MiB.
constexpr int qtLimit = 4096;

/// Whether the user's own limit for Qt's readers, an environment variable above `qtLimit`, allows a picture
/// of four bytes a pixel.
Result<Done> checkUsersLimit(const PixelSize& size) {
    const int mebibytes = QImageReader::allocationLimit();
    constexpr qint64 mebibyte = 1 << 20;
    if (mebibytes == qtLimit || mebibytes == 0 || size.width * size.height * 4 <= mebibytes * mebibyte)
        return Done{};
    return Error{ErrorCode::TooLarge,
                 QStringLiteral("the picture has %1 × %2 pixels, for which the %3 MiB of the environment "
                                "variable QT_IMAGEIO_MAXALLOC are too few")
                     .arg(size.width)
                     .arg(size.height)
                     .arg(mebibytes)};
}

Error unreadableHeader(const QString& name) {
    return PictureReader::damaged(name, QStringLiteral("its header can't be read"));
}

/// Why Qt's reader failed.
Error failure(const QImageReader& reader, const RefusedMemory& memory, const QString& name,
              const PixelSize& size) {
    if (memory.wasSeen())
        return noMemoryForPixels(size.width, size.height);
    // Qt has no reader for the format: the plugin is missing, or there was no memory for it.
    if (reader.error() == QImageReader::UnsupportedFormatError)
        return {ErrorCode::Unsupported,
                QStringLiteral("%1 pictures can't be read, since Qt's plugin for them can't be loaded")
                    .arg(name)};
    return PictureReader::damaged(name, reader.errorString());
}

/// Reads a picture by Qt's reader for `format`. `size` comes from the file's header, without Qt: Qt's readers
/// may already take memory for pixels when they are asked for the size. With `hasGaps` the file may leave out
/// pixels of a picture of Indexed8, which then have the index 0.
Result<QtPicture> read(const QByteArray& bytes, const QByteArray& format, const QString& name,
                       const std::optional<PixelSize>& size, bool hasGaps = false) {
    if (!size)
        return unreadableHeader(name);
    if (const Result<Done> allowed = PictureReader::checkSize(size->width, size->height); !allowed)
        return allowed.error();
    // Behind the limit above Qt's own is only a backstop. It is for the whole process: what Qt itself reads,
    // as from the clipboard, keeps the lower one.
    const QtAllocationLimit limit(qtLimit);
    if (const Result<Done> allowed = checkUsersLimit(*size); !allowed)
        return allowed.error();
    WatchedDevice device(bytes);
    QImageReader reader(&device, format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(false);
    QtPicture picture;
    if (hasGaps) {
        Result<QImage> cleared = newRaster(
            QSize(static_cast<int>(size->width), static_cast<int>(size->height)), QImage::Format_Indexed8);
        if (!cleared)
            return cleared.error();
        cleared->fill(0);
        picture.image = std::move(*cleared); // Qt's reader takes an image that fits
    }
    // A WebP file is read at once, and its pixels follow without steps.
    constexpr qint64 pixelsPerMillisecond = 50'000;
    if (format == "webp")
        LongWork::expect(LongWork::Milliseconds(size->width * size->height / pixelsPerMillisecond));
    const RefusedMemory memory;
    if (!reader.read(&picture.image))
        return failure(reader, memory, name, *size);
    picture.ranShort = device.ranShort();
    picture.hasFrames = reader.imageCount() > 1;
    return picture;
}

constexpr qsizetype bmpHeaderAt = 14;
constexpr quint32 bmpCoreHeaderSize = 12;

/// The begin of a BMP file's header where it is longer than `bmpCoreHeaderSize`.
struct BmpInfoHeader {
    quint32_le size;
    qint32_le width;
    qint32_le height;
    quint16_le planes;
    quint16_le depth;
    quint32_le compression;
};
static_assert(sizeof(BmpInfoHeader) == 20);

/// The size in a BMP file's header. The height of a picture stored from the top is negative there; it is
/// returned without the sign.
std::optional<PixelSize> bmpSize(const QByteArray& bytes) {
    struct CoreHeader {
        quint32_le size;
        quint16_le width;
        quint16_le height;
    };
    static_assert(sizeof(CoreHeader) == 8);
    const ByteReader file(bytes);
    const auto core = file.record<CoreHeader>(bmpHeaderAt);
    const auto info = file.record<BmpInfoHeader>(bmpHeaderAt);
    if (!core || !info)
        return std::nullopt;
    if (core->size == bmpCoreHeaderSize)
        return PixelSize{core->width, core->height};
    return PixelSize{info->width, std::abs(qint64{info->height})};
}

/// Whether a BMP file's pixels are run lengths, which may skip some of them.
bool hasRunLengths(const QByteArray& bytes) {
    constexpr quint32 rle8 = 1;
    constexpr quint32 rle4 = 2;
    const auto info = ByteReader(bytes).record<BmpInfoHeader>(bmpHeaderAt);
    return info && info->size != bmpCoreHeaderSize &&
           (info->compression == rle8 || info->compression == rle4);
}

/// The header of a chunk in a RIFF file.
struct RiffHeader {
    quint32_be type;
    quint32_le length;
};
static_assert(sizeof(RiffHeader) == 8);

/// Where the first chunk of a RIFF file begins: after the file's own header and the type of its contents.
constexpr qsizetype firstChunk = sizeof(RiffHeader) + sizeof(quint32);

/// The canvas size in a WebP file's first chunk (RFC 9649).
std::optional<PixelSize> webPSize(const QByteArray& bytes) {
    const ByteReader file(bytes);
    const auto type = file.fourCharCode(firstChunk);
    const auto data = file.slice(firstChunk + qsizetype{sizeof(RiffHeader)}, 10);
    if (!type || !data)
        return std::nullopt;
    constexpr quint32 low14 = 0x3fff;
    if (*type == FourCharCode("VP8X")) {
        constexpr qsizetype width = 3;
        return PixelSize{static_cast<qint64>(*data->number(4, width, std::endian::little)) + 1,
                         static_cast<qint64>(*data->number(7, width, std::endian::little)) + 1};
    }
    if (*type == FourCharCode("VP8L")) {
        const quint32 bits = *data->littleEndian<quint32>(1);
        return PixelSize{qint64{bits & low14} + 1, qint64{(bits >> 14) & low14} + 1};
    }
    if (*type == FourCharCode("VP8 "))
        return PixelSize{*data->littleEndian<quint16>(6) & low14, *data->littleEndian<quint16>(8) & low14};
    return std::nullopt;
}

/// The data of the first chunk of `type` in a RIFF file; no value where there is no such chunk.
std::optional<QByteArrayView> findRiffChunk(const QByteArray& bytes, FourCharCode type) {
    auto rest = ByteReader(bytes).from(firstChunk);
    while (rest) {
        const auto header = rest->record<RiffHeader>(0);
        const auto data = header ? rest->slice(sizeof(RiffHeader), header->length) : std::nullopt;
        if (!data)
            return std::nullopt;
        if (header->type == type.value)
            return data->view();
        rest = rest->from(ByteCount(sizeof(RiffHeader)) + data->size() + data->size() % 2);
    }
    return std::nullopt;
}

bool hasRiffChunk(const QByteArray& bytes, FourCharCode type) {
    return findRiffChunk(bytes, type).has_value();
}

QByteArray riffChunk(const QByteArray& bytes, FourCharCode type) {
    return findRiffChunk(bytes, type).value_or(QByteArrayView()).toByteArray();
}

Result<DecodedPicture> readWholeBmp(const QByteArray& bytes) {
    const QString name = QStringLiteral("BMP");
    Result<QtPicture> picture = read(bytes, "bmp", name, bmpSize(bytes), hasRunLengths(bytes));
    if (!picture)
        return picture.error();
    if (picture->ranShort)
        return PictureReader::damaged(name, QStringLiteral("it ends too early"));
    return converted(std::move(picture->image), {});
}

/// What a WebP picture takes besides its pixels while it is read, in bytes for each of them. Lossless
/// pictures and alpha are decoded whole; of an animation its first frame and the canvas are.
int webPWorkingBytes(const QByteArray& bytes) {
    constexpr int whole = 4;
    if (hasRiffChunk(bytes, "ANMF"))
        return 2 * whole + 1;
    if (hasRiffChunk(bytes, "ALPH"))
        return whole + 1;
    return hasRiffChunk(bytes, "VP8 ") ? 0 : whole;
}

/// `bytes` of an animation, of which the header says that it has alpha. Qt's reader clears the canvas of such
/// animations alone: of others, what the first frame leaves free keeps what was in memory before.
QByteArray withClearedCanvas(QByteArray bytes) {
    constexpr qsizetype flagsAt = firstChunk + qsizetype{sizeof(RiffHeader)};
    constexpr char alpha = 0x10;
    if (ByteReader(bytes).fourCharCode(firstChunk) == FourCharCode("VP8X") && hasRiffChunk(bytes, "ANMF"))
        bytes[flagsAt] = static_cast<char>(bytes[flagsAt] | alpha);
    return bytes;
}

Result<DecodedPicture> readWholeWebP(const QByteArray& file) {
    const QByteArray bytes = withClearedCanvas(file);
    const std::optional<PixelSize> size = webPSize(bytes);
    if (size && PictureReader::checkSize(size->width, size->height)) {
        const Result<Done> allowed = PictureReader::checkWorkingMemory(
            size->width * size->height * webPWorkingBytes(bytes), size->width, size->height,
            QStringLiteral("a lossless, translucent or animated WebP picture"));
        if (!allowed)
            return allowed.error();
    }
    Result<QtPicture> picture = read(bytes, "webp", QStringLiteral("WebP"), size);
    if (!picture)
        return picture.error();
    const Result<EmbeddedProfile> embedded = ColorProfile::embedded(riffChunk(bytes, "ICCP"));
    if (!embedded)
        return embedded.error();
    Result<DecodedPicture> result = converted(std::move(picture->image), embedded->profile);
    if (!result)
        return result;
    if (embedded->isBroken)
        result->warnings << PictureReader::profileWarning();
    Result<QImage> upright = PictureReader::upright(
        std::move(result->raster),
        PictureReader::orientation(riffChunk(bytes, "EXIF"), riffChunk(bytes, "XMP ")));
    if (!upright)
        return upright.error();
    result->raster = std::move(*upright);
    if (picture->hasFrames)
        result->warnings << PictureReader::framesWarning();
    return result;
}

} // namespace

Result<DecodedPicture> readBmp(const QByteArray& bytes) {
    return unlessMemoryIsShort([&] { return readWholeBmp(bytes); });
}

Result<DecodedPicture> readWebP(const QByteArray& bytes) {
    return unlessMemoryIsShort([&] { return readWholeWebP(bytes); });
}
