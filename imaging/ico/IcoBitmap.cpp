#include "imaging/ico/IcoBitmap.h"

#include "base/ByteReader.h"
#include "imaging/pixels/Premultiplication.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace {

struct Header {
    quint32_le headerSize;
    qint32_le width;
    qint32_le height;
    quint16_le planes;
    quint16_le bits;
    quint32_le compression;
    quint32_le imageSize;
    qint32_le horizontalResolution;
    qint32_le verticalResolution;
    quint32_le colorsUsed;
    quint32_le importantColors;
};
static_assert(sizeof(Header) == 40);

using Pixel = std::array<uchar, 4>; ///< red, green, blue, alpha, not premultiplied

constexpr qsizetype paletteEntry = 4;

/// The bytes of a row, which are a multiple of four.
qsizetype rowBytes(int width, int bits) {
    return (qsizetype{width} * bits + 31) / 32 * 4;
}

/// Number `x` of the values of `bits` bits in a row; the first one is in the highest bits.
unsigned valueAt(const uchar* row, int x, int bits) {
    const int perByte = 8 / bits;
    const int shift = 8 - bits * (x % perByte + 1);
    return static_cast<unsigned>(row[x / perByte]) >> shift & ((1U << bits) - 1U);
}

Pixel indexed(QByteArrayView palette, unsigned index) {
    const qsizetype at = qsizetype{index} * paletteEntry;
    if (at + paletteEntry > palette.size())
        return {0, 0, 0, 255};
    const auto* entry = reinterpret_cast<const uchar*>(palette.data()) + at;
    return {entry[2], entry[1], entry[0], 255};
}

/// A sample of five bits as one of eight.
uchar widened(unsigned sample) {
    return static_cast<uchar>((sample & 31U) << 3U | (sample & 31U) >> 2U);
}

Pixel pixelAt(const IcoBitmap& bitmap, const uchar* row, int x) {
    constexpr int palettes = 8;
    if (bitmap.bits <= palettes)
        return indexed(bitmap.palette, valueAt(row, x, bitmap.bits));
    if (bitmap.bits == 16) {
        const unsigned value = row[2 * x] | static_cast<unsigned>(row[2 * x + 1]) << 8U;
        return {widened(value >> 10U), widened(value >> 5U), widened(value), 255};
    }
    const uchar* sample = row + qsizetype{x} * (bitmap.bits / 8);
    return {sample[2], sample[1], sample[0], bitmap.bits == 32 ? sample[3] : uchar{255}};
}

/// Whether a bitmap of 32 bits tells the alpha of its pixels. Old ones have zero there and a mask alone.
bool hasAlpha(QByteArrayView colors) {
    for (qsizetype i = 3; i < colors.size(); i += 4) {
        if (colors[i] != 0)
            return true;
    }
    return false;
}

} // namespace

std::optional<IcoBitmap> IcoBitmap::parse(QByteArrayView data, const QSize& told) {
    const ByteReader reader(data);
    const auto header = reader.record<Header>(0);
    constexpr std::array known{1, 4, 8, 16, 24, 32};
    constexpr qint64 longest = 1 << 20;
    if (!header || header->headerSize < sizeof(Header) || header->compression != 0 ||
        std::ranges::find(known, static_cast<int>(header->bits)) == known.end())
        return std::nullopt;
    const qint64 width = header->width;
    const qint64 rows = std::abs(qint64{header->height});
    if (width <= 0 || width > longest || rows > longest)
        return std::nullopt;
    IcoBitmap bitmap;
    bitmap.bits = header->bits;
    bitmap.isFromTop = header->height < 0;
    const quint32 most = bitmap.bits <= 8 ? 1U << static_cast<unsigned>(bitmap.bits) : 0;
    const quint32 used = header->colorsUsed != 0 ? std::min<quint32>(header->colorsUsed, most) : most;
    const auto behind = reader.from(header->headerSize);
    const auto palette = behind ? behind->slice(0, qsizetype{used} * paletteEntry) : std::nullopt;
    const auto rest = palette ? behind->from(palette->size()) : std::nullopt;
    if (!rest)
        return std::nullopt;
    bitmap.palette = palette->view();
    bitmap.rest = rest->view();
    // Some programs don't count the mask's rows.
    const bool isUncounted = width == told.width() && rows == told.height();
    bitmap.size = QSize(static_cast<int>(width), static_cast<int>(isUncounted ? rows : rows / 2));
    return bitmap;
}

Result<DecodedPicture> IcoBitmap::picture() const {
    const int width = size.width();
    const int height = size.height();
    const qsizetype colorRow = rowBytes(width, bits);
    const qsizetype maskRow = rowBytes(width, 1);
    const auto colors = ByteReader(rest).slice(0, colorRow * height);
    const auto mask = colors ? ByteReader(rest).slice(colors->size(), maskRow * height) : std::nullopt;
    const bool isMasked = bits != 32 || (colors && !hasAlpha(colors->view()));
    if (!colors || (isMasked && !mask))
        return PictureReader::damaged(QStringLiteral("ICO"), QStringLiteral("its pixels break off"));
    Result<QImage> raster = PictureReader::newPicture(width, height);
    if (!raster)
        return raster.error();
    const auto* colorBytes = reinterpret_cast<const uchar*>(colors->view().data());
    const auto* maskBytes = isMasked ? reinterpret_cast<const uchar*>(mask->view().data()) : nullptr;
    for (int y = 0; y < height; ++y) {
        const qsizetype row = isFromTop ? y : height - 1 - y;
        uchar* out = raster->scanLine(y);
        for (int x = 0; x < width; ++x) {
            Pixel pixel = pixelAt(*this, colorBytes + row * colorRow, x);
            if (isMasked)
                pixel[3] = valueAt(maskBytes + row * maskRow, x, 1) != 0 ? 0 : 255;
            std::ranges::copy(pixel, out + qsizetype{4} * x);
        }
        premultiply(out, out, static_cast<std::size_t>(width));
    }
    return DecodedPicture{std::move(*raster), {}};
}
