#include "imaging/image/PictureReader.h"

#include "base/ByteReader.h"
#include "imaging/pixels/Raster.h"

#include <cstring>
#include <utility>

Result<Done> PictureReader::checkSize(qint64 width, qint64 height) {
    if (width <= 0 || height <= 0)
        return Error{ErrorCode::Damaged, QStringLiteral("the picture has no pixels")};
    if (width > maximumSide || height > maximumSide || width * height > maximumPixels)
        return tooLarge(width, height);
    return Done{};
}

Error PictureReader::tooLarge(qint64 width, qint64 height) {
    return {ErrorCode::TooLarge,
            QStringLiteral(
                "the picture has %1 × %2 pixels; the limit is 268435456 in all (16384 × 16384), and 1000000 "
                "in a row or column")
                .arg(width)
                .arg(height)};
}

Result<Done> PictureReader::checkWorkingMemory(qint64 bytes, qint64 width, qint64 height,
                                               const QString& kind) {
    if (bytes <= maximumWorkingMemory)
        return Done{};
    return Error{ErrorCode::TooLarge,
                 QStringLiteral("%1 of %2 × %3 pixels takes %4 MiB besides its pixels; the limit is %5 MiB")
                     .arg(kind)
                     .arg(width)
                     .arg(height)
                     .arg((bytes + (1 << 20) - 1) >> 20)
                     .arg(maximumWorkingMemory >> 20)};
}

Result<QImage> PictureReader::newPicture(qint64 width, qint64 height) {
    if (const Result<Done> allowed = checkSize(width, height); !allowed)
        return allowed.error();
    return newRaster(QSize(static_cast<int>(width), static_cast<int>(height)),
                     QImage::Format_RGBA8888_Premultiplied);
}

bool PictureReader::isUpright(int orientation) {
    return orientation <= 1 || orientation > 8;
}

Result<QImage> PictureReader::upright(QImage raster, int orientation) {
    if (isUpright(orientation))
        return raster;
    const int width = raster.width();
    const int height = raster.height();
    const bool swapsSides = orientation >= 5;
    Result<QImage> result =
        newRaster(swapsSides ? QSize(height, width) : QSize(width, height), raster.format());
    if (!result)
        return result;
    const bool fromRight = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
    const bool fromBottom = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
    const qsizetype stride = raster.bytesPerLine();
    const uchar* source = std::as_const(raster).constBits();
    // A step along a result row moves along a source row, or along a column where the sides are swapped.
    for (int y = 0; y < result->height(); ++y) {
        uchar* out = result->scanLine(y);
        for (int x = 0; x < result->width(); ++x, out += 4) {
            const int sourceX = swapsSides ? y : x;
            const int sourceY = swapsSides ? x : y;
            const qsizetype column = fromRight ? width - 1 - sourceX : sourceX;
            const qsizetype line = fromBottom ? height - 1 - sourceY : sourceY;
            std::memcpy(out, source + line * stride + 4 * column, 4);
        }
    }
    return result;
}

std::optional<int> PictureReader::exifOrientation(const QByteArray& exif) {
    constexpr QByteArrayView mark("Exif\0\0", 6);
    const QByteArrayView view = exif;
    const ByteReader tiff(view.startsWith(mark) ? view.sliced(mark.size()) : view);
    const bool isBig = tiff.view().startsWith("MM");
    if (!isBig && !tiff.view().startsWith("II"))
        return std::nullopt;
    const auto order = isBig ? std::endian::big : std::endian::little;
    constexpr quint16 orientationTag = 0x0112;
    constexpr quint16 shortType = 3;
    constexpr qsizetype entrySize = 12;
    const auto at = tiff.number<quint32>(4, order);
    const auto directory = at ? tiff.from(*at) : std::nullopt;
    const auto count = directory ? directory->number<quint16>(0, order) : std::nullopt;
    auto rest = count ? directory->from(sizeof(quint16)) : std::nullopt;
    for (int i = 0; rest && i < *count; ++i) {
        const auto entry = rest->slice(0, entrySize);
        if (!entry)
            return std::nullopt;
        if (entry->number<quint16>(0, order) == orientationTag &&
            entry->number<quint16>(2, order) == shortType)
            return entry->number<quint16>(8, order).value_or(1);
        rest = rest->from(entrySize);
    }
    return std::nullopt;
}

int PictureReader::orientation(const QByteArray& exif, QByteArrayView xmp) {
    const std::optional<int> found = exifOrientation(exif);
    return found ? *found : xmpOrientation(xmp).value_or(1);
}

QString PictureReader::framesWarning() {
    return QStringLiteral("the picture has several frames; the first is taken");
}

QString PictureReader::profileWarning() {
    return QStringLiteral("the picture's colour profile could not be used; its colours are taken as sRGB");
}

Error PictureReader::damaged(const QString& format, const QString& detail) {
    return {ErrorCode::Damaged,
            QStringLiteral("the %1 picture is truncated or damaged (%2)").arg(format, detail)};
}
