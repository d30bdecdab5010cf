#include "imaging/ico/IcoWriter.h"

#include "base/ByteWriter.h"
#include "base/ShortMemory.h"
#include "imaging/image/EncodedPicture.h"
#include "imaging/pixels/Premultiplication.h"
#include "imaging/png/PngWriter.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace {

constexpr int longestSide = 256;
constexpr quint16 bitsPerPixel = 32;
constexpr qsizetype fileHeaderSize = 6;
constexpr qsizetype entrySize = 16;

/// A BITMAPINFOHEADER, the pixels as B, G, R, A from the bottom row up, and the AND mask: a bit for each
/// transparent pixel, in rows of whole four bytes.
Result<QByteArray> bitmap(const QImage& raster) {
    const Result<QImage> straight = straightRaster(raster);
    if (!straight)
        return straight.error();
    const int width = straight->width();
    const int height = straight->height();
    const qsizetype maskRow = (width + 31) / 32 * 4;
    const qsizetype pixelBytes = qsizetype{4} * width * height;
    QByteArray bytes;
    ByteWriter writer(bytes);
    constexpr quint32 headerSize = 40;
    // The height counts the mask too. Behind the pixels' length come four fields that say nothing here.
    writer.littleEndian<quint32>(headerSize)
        .littleEndian<qint32>(width)
        .littleEndian<qint32>(2 * height)
        .littleEndian<quint16>(1)
        .littleEndian<quint16>(bitsPerPixel)
        .littleEndian<quint32>(0)
        .littleEndian<quint32>(static_cast<quint32>(pixelBytes + maskRow * height));
    for (int i = 0; i < 4; ++i)
        writer.littleEndian<quint32>(0);
    QByteArray mask(maskRow * height, '\0');
    for (int y = height - 1, row = 0; y >= 0; --y, ++row) {
        const uchar* pixel = straight->constScanLine(y);
        for (int x = 0; x < width; ++x, pixel += 4) {
            const char colors[]{static_cast<char>(pixel[2]), static_cast<char>(pixel[1]),
                                static_cast<char>(pixel[0]), static_cast<char>(pixel[3])};
            writer.bytes({colors, std::ssize(colors)});
            if (pixel[3] == 0) {
                char& eight = mask[row * maskRow + x / 8];
                eight =
                    static_cast<char>(static_cast<uchar>(eight) | 0x80U >> (static_cast<unsigned>(x) % 8));
            }
        }
    }
    writer.bytes(mask);
    return bytes;
}

Result<QByteArray> picture(const QImage& raster, PngStore* pngs) {
    if (raster.isNull())
        return noPixels();
    const int side = std::max(raster.width(), raster.height());
    if (side > longestSide)
        return sideTooLong(longestSide);
    if (side < longestSide)
        return bitmap(raster);
    return pngs != nullptr ? pngs->encoded(raster) : encodePng(raster);
}

/// A side as an entry has it: 0 stands for 256.
quint8 told(int side) {
    return static_cast<quint8>(side % longestSide);
}

Result<QByteArray> file(const std::vector<QImage>& rasters, PngStore* pngs) {
    std::vector<QByteArray> pictures;
    for (const QImage& raster : rasters) {
        Result<QByteArray> encoded = picture(raster, pngs);
        if (!encoded)
            return encoded;
        pictures.push_back(std::move(*encoded));
    }
    QByteArray ico;
    ByteWriter writer(ico);
    writer.littleEndian<quint16>(0).littleEndian<quint16>(1).littleEndian<quint16>(
        static_cast<quint16>(pictures.size()));
    qsizetype at = fileHeaderSize + entrySize * std::ssize(pictures);
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        writer.littleEndian<quint8>(told(rasters[i].width()))
            .littleEndian<quint8>(told(rasters[i].height()))
            .littleEndian<quint8>(0) // no palette
            .littleEndian<quint8>(0)
            .littleEndian<quint16>(1)
            .littleEndian<quint16>(bitsPerPixel)
            .littleEndian<quint32>(static_cast<quint32>(pictures[i].size()))
            .littleEndian<quint32>(static_cast<quint32>(at));
        at += pictures[i].size();
    }
    for (const QByteArray& one : pictures)
        writer.bytes(one);
    return ico;
}

} // namespace

Result<QByteArray> encodeIco(const std::vector<QImage>& rasters, PngStore* pngs) {
    if (rasters.empty())
        return noPixels();
    if (rasters.size() > std::numeric_limits<quint16>::max())
        return Error{ErrorCode::TooLarge, QStringLiteral("an icon file holds at most 65535 pictures")};
    return unlessMemoryIsShort([&] { return file(rasters, pngs); });
}
