#include "imaging/formats/BmpWriter.h"

#include "base/ByteWriter.h"
#include "imaging/image/EncodedPicture.h"
#include "imaging/pixels/Premultiplication.h"

#include <limits>

namespace {

struct BmpHeader {
    // The file header after its two letters.
    quint32_le fileSize;
    quint32_le reserved;
    quint32_le pixelsAt;
    // The version 5 header.
    quint32_le headerSize;
    qint32_le width;
    qint32_le height; ///< positive: rows from the bottom
    quint16_le planes;
    quint16_le bitsPerPixel;
    quint32_le compression;
    quint32_le imageSize;
    qint32_le horizontalPixelsPerMetre;
    qint32_le verticalPixelsPerMetre;
    quint32_le colorsUsed;
    quint32_le colorsImportant;
    quint32_le redMask;
    quint32_le greenMask;
    quint32_le blueMask;
    quint32_le alphaMask;
    quint32_le colorSpace;
    quint32_le endpoints[9];
    quint32_le gamma[3];
    quint32_le intent;
    quint32_le profileAt;
    quint32_le profileSize;
    quint32_le reservedAgain;
};
static_assert(sizeof(BmpHeader) == 12 + 124);

constexpr quint32 bitFields = 3;
constexpr quint32 sRgb = 0x73524742; // 'sRGB'
constexpr quint32 perceptual = 4;

Result<QByteArray> bmpFile(const QImage& raster) {
    constexpr auto largest = static_cast<qsizetype>(std::numeric_limits<qint32>::max());
    constexpr qsizetype start = 2 + static_cast<qsizetype>(sizeof(BmpHeader));
    const qsizetype rowBytes = qsizetype{4} * raster.width();
    if (rowBytes * raster.height() > largest - start)
        return Error{ErrorCode::TooLarge,
                     QStringLiteral("this format holds no more than %1 bytes").arg(largest)};
    const Result<QImage> straight = straightRaster(raster);
    if (!straight)
        return straight.error();
    const auto imageSize = static_cast<quint32>(rowBytes * raster.height());
    BmpHeader header{};
    header.fileSize = static_cast<quint32>(start) + imageSize;
    header.pixelsAt = static_cast<quint32>(start);
    header.headerSize = 124;
    header.width = raster.width();
    header.height = raster.height();
    header.planes = 1;
    header.bitsPerPixel = 32;
    header.compression = bitFields;
    header.imageSize = imageSize;
    header.redMask = 0x00ff0000;
    header.greenMask = 0x0000ff00;
    header.blueMask = 0x000000ff;
    header.alphaMask = 0xff000000;
    header.colorSpace = sRgb;
    header.intent = perceptual;
    QByteArray bytes("BM");
    bytes.reserve(start + static_cast<qsizetype>(imageSize));
    ByteWriter(bytes).record(header);
    for (int y = raster.height() - 1; y >= 0; --y) {
        const uchar* in = straight->constScanLine(y);
        for (int x = 0; x < raster.width(); ++x, in += 4) {
            const char pixel[] = {static_cast<char>(in[2]), static_cast<char>(in[1]),
                                  static_cast<char>(in[0]), static_cast<char>(in[3])};
            bytes.append(pixel, sizeof pixel);
        }
    }
    return bytes;
}

} // namespace

Result<QByteArray> encodeBmp(const QImage& raster) {
    return encodedPicture(raster, [&] { return bmpFile(raster); });
}
