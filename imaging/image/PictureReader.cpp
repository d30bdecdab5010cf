#include "imaging/image/PictureReader.h"

#include <QtEndian>

#include <cstring>
#include <utility>

std::optional<Error> PictureReader::refusedSize(qint64 width, qint64 height) {
    if (width <= 0 || height <= 0)
        return Error{ErrorCode::Damaged, QStringLiteral("the picture has no pixels")};
    if (width > maximumSide || height > maximumSide || width * height > maximumPixels)
        return tooLarge(width, height);
    return std::nullopt;
}

Error PictureReader::tooLarge(qint64 width, qint64 height) {
    return {ErrorCode::TooLarge,
            QStringLiteral(
                "the picture has %1 × %2 pixels; the limit is 16384 × 16384, or as many in all with no side "
                "above 1000000")
                .arg(width)
                .arg(height)};
}

Error PictureReader::noMemory(qint64 width, qint64 height) {
    return {ErrorCode::TooLarge,
            QStringLiteral("not enough memory for %1 × %2 pixels").arg(width).arg(height)};
}

Result<QImage> PictureReader::newRaster(qint64 width, qint64 height) {
    if (const std::optional<Error> refused = refusedSize(width, height))
        return *refused;
    QImage raster(static_cast<int>(width), static_cast<int>(height), QImage::Format_RGBA8888_Premultiplied);
    if (raster.isNull())
        return noMemory(width, height);
    return raster;
}

bool PictureReader::isUpright(int orientation) {
    return orientation <= 1 || orientation > 8;
}

QImage PictureReader::upright(QImage raster, int orientation) {
    if (isUpright(orientation))
        return raster;
    const int width = raster.width();
    const int height = raster.height();
    const bool swapsSides = orientation >= 5;
    QImage result(swapsSides ? height : width, swapsSides ? width : height, raster.format());
    if (result.isNull())
        return result;
    const bool fromRight = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
    const bool fromBottom = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
    const qsizetype stride = raster.bytesPerLine();
    const uchar* source = std::as_const(raster).constBits();
    // A step along a result row moves along a source row, or along a column where the sides are swapped.
    for (int y = 0; y < result.height(); ++y) {
        uchar* out = result.scanLine(y);
        for (int x = 0; x < result.width(); ++x, out += 4) {
            const int sourceX = swapsSides ? y : x;
            const int sourceY = swapsSides ? x : y;
            const qsizetype column = fromRight ? width - 1 - sourceX : sourceX;
            const qsizetype line = fromBottom ? height - 1 - sourceY : sourceY;
            std::memcpy(out, source + line * stride + 4 * column, 4);
        }
    }
    return result;
}

int PictureReader::exifOrientation(const QByteArray& exif) {
    const QByteArray tiff = exif.startsWith(QByteArray("Exif\0\0", 6)) ? exif.mid(6) : exif;
    const bool isBig = tiff.startsWith("MM");
    if (tiff.size() < 8 || (!isBig && !tiff.startsWith("II")))
        return 1;
    const auto read16 = [&](qsizetype at) -> quint32 {
        return isBig ? qFromBigEndian<quint16>(tiff.constData() + at)
                     : qFromLittleEndian<quint16>(tiff.constData() + at);
    };
    const auto read32 = [&](qsizetype at) -> quint32 {
        return isBig ? qFromBigEndian<quint32>(tiff.constData() + at)
                     : qFromLittleEndian<quint32>(tiff.constData() + at);
    };
    constexpr quint32 orientationTag = 0x0112;
    constexpr quint32 shortType = 3;
    constexpr qsizetype entrySize = 12;
    const qsizetype directory = read32(4);
    if (directory + 2 > tiff.size())
        return 1;
    const quint32 count = read16(directory);
    for (quint32 i = 0; i < count; ++i) {
        const qsizetype entry = directory + 2 + entrySize * i;
        if (entry + entrySize > tiff.size())
            return 1;
        if (read16(entry) == orientationTag && read16(entry + 2) == shortType)
            return static_cast<int>(read16(entry + 8));
    }
    return 1;
}

QString PictureReader::profileWarning() {
    return QStringLiteral("the picture's colour profile could not be used; its colours are taken as sRGB");
}

Error PictureReader::damaged(const QString& format, const QString& detail) {
    return {ErrorCode::Damaged,
            QStringLiteral("the %1 picture is truncated or damaged (%2)").arg(format, detail)};
}
