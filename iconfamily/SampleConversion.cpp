// Converts bitmaps into the bytes of elements, in four ways.
#include "base/Log.h"
#include "base/ShortMemory.h"
#include "iconfamily/IconFamily.h"
#include "iconfamily/PixelBuffers.h"
#include "imaging/pixels/Premultiplication.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

constexpr int pixelsPerByte = 8;

bool isOfSize(const BitmapImageRep& bitmap, qint32 size) {
    return size > 0 && bitmap.pixelsWide() == size && bitmap.pixelsHigh() == size;
}

/// Logs why the conversion `name` has no result.
void refuse(const char* name, const QString& cause) {
    logLine(QStringLiteral("%1:requiredPixelSize: returning NULL due to %2").arg(QLatin1String(name), cause));
}

/// The checks after that of the size. Three of the conversions share them.
bool hasShape(const BitmapImageRep& bitmap, const char* name, bool takesGrey) {
    if (bitmap.isPlanar()) {
        refuse(name, QStringLiteral("isPlanar == YES"));
        return false;
    }
    if (bitmap.bitsPerSample() != 8) {
        refuse(name, QStringLiteral("bitsPerSample == %1").arg(bitmap.bitsPerSample()));
        return false;
    }
    const int samples = bitmap.samplesPerPixel();
    const int bits = bitmap.bitsPerPixel();
    if ((samples == 3 && bits == 24) || (samples == 4 && bits == 32) ||
        (takesGrey && samples == 1 && bits == 8))
        return true;
    refuse(name, QStringLiteral("samplesPerPixel == %1, bitsPerPixel == %2").arg(samples).arg(bits));
    return false;
}

const uchar* rowOf(const BitmapImageRep& bitmap, qint32 y) {
    return reinterpret_cast<const uchar*>(bitmap.bitmapData().data()) + y * bitmap.bytesPerRow();
}

/// A, R, G, B of each pixel.
Result<QByteArray> samples(const BitmapImageRep& bitmap, qint32 size) {
    const qsizetype length = 4 * qsizetype{size} * size;
    const Result<RasterImage> image = bitmap.CGImage();
    if (!image)
        return image.error();
    // The image may hold more or fewer bytes than the buffer: extra ones are ignored, missing ones are 0.
    QByteArray scratch(4 * qsizetype{image->height} * image->width, '\0');
    std::memcpy(scratch.data(), image->bytes.constData(),
                static_cast<std::size_t>(std::min(scratch.size(), image->bytes.size())));
    scratch.resize(length, '\0');
    QByteArray out(length, Qt::Uninitialized);
    const auto pixels = static_cast<std::size_t>(length / 4);
    const auto* from = reinterpret_cast<const std::uint8_t*>(scratch.constData());
    auto* to = reinterpret_cast<std::uint8_t*>(out.data());
    if (bitmap.bitsPerPixel() == 32) {
        const bool isAlphaFirst =
            image->alphaInfo == AlphaInfo::PremultipliedFirst || image->alphaInfo == AlphaInfo::First;
        PixelBuffers::permute(from, to, pixels,
                              isAlphaFirst ? PixelBuffers::Map{3, 2, 1, 0} : PixelBuffers::Map{0, 3, 2, 1});
        if (image->alphaInfo == AlphaInfo::PremultipliedLast ||
            image->alphaInfo == AlphaInfo::PremultipliedFirst)
            unpremultiplyArgb(to, to, pixels);
    } else {
        PixelBuffers::expandRgb(from, to, pixels);
        // The result is G, R, 255, B.
        PixelBuffers::permute(to, to, pixels, {2, 1, 0, 3});
    }
    return out;
}

/// No value if the conversion failed.
std::optional<QByteArray> answer(const Result<QByteArray>& result) {
    return result ? std::optional(*result) : std::nullopt;
}

/// One byte of each pixel: the byte at `offset` in a pixel of `stride` bytes.
Result<QByteArray> oneByte(const BitmapImageRep& bitmap, qint32 size, qsizetype stride, qsizetype offset) {
    return unlessMemoryIsShort([&] {
        QByteArray out(qsizetype{size} * size, Qt::Uninitialized);
        char* to = out.data();
        for (qint32 y = 0; y < size; ++y) {
            const uchar* from = rowOf(bitmap, y) + offset;
            for (qint32 x = 0; x < size; ++x, from += stride)
                *to++ = static_cast<char>(*from);
        }
        return out;
    });
}

/// One bit of each pixel; all bits are stored twice.
QByteArray bitsTwice(const BitmapImageRep& bitmap, qint32 size) {
    const int bits = bitmap.bitsPerPixel();
    const qsizetype row = size / pixelsPerByte;
    const qsizetype half = row * size;
    QByteArray out(2 * half, '\0');
    for (qint32 y = 0; y < size; ++y) {
        const uchar* from = rowOf(bitmap, y);
        auto* to = reinterpret_cast<uchar*>(out.data()) + y * row;
        if (bits == 1) {
            std::memcpy(to, from, static_cast<std::size_t>(row));
        } else if (bits == 24) {
            std::fill_n(to, row, uchar{255});
        } else {
            for (qint32 x = 0; x < size; ++x) {
                const bool isSet = from[qsizetype{x} * bits / pixelsPerByte] != 0;
                to[x / pixelsPerByte] |= static_cast<uchar>(isSet ? 128 >> (x % pixelsPerByte) : 0);
            }
        }
    }
    std::memcpy(out.data() + half, out.constData(), static_cast<std::size_t>(half));
    return out;
}

} // namespace

std::optional<QByteArray> IconFamily::get32BitDataFromBitmapImageRep(const BitmapImageRep& bitmap,
                                                                     qint32 requiredPixelSize) {
    if (!isOfSize(bitmap, requiredPixelSize) || !hasShape(bitmap, "get32BitDataFromBitmapImageRep", false))
        return std::nullopt;
    return answer(unlessMemoryIsShort([&] { return samples(bitmap, requiredPixelSize); }));
}

std::optional<QByteArray> IconFamily::get8BitDataFromBitmapImageRep(const BitmapImageRep& bitmap,
                                                                    qint32 requiredPixelSize) {
    if (!isOfSize(bitmap, requiredPixelSize) || !hasShape(bitmap, "get8BitDataFromBitmapImageRep", false))
        return std::nullopt;
    return answer(bitmap.bitsPerPixel() == 32 ? oneByte(bitmap, requiredPixelSize, 4, 3)
                                              : oneByte(bitmap, requiredPixelSize, 3, 2));
}

std::optional<QByteArray> IconFamily::get8BitMaskFromBitmapImageRep(const BitmapImageRep& bitmap,
                                                                    qint32 requiredPixelSize) {
    if (!isOfSize(bitmap, requiredPixelSize) || !hasShape(bitmap, "get8BitMaskFromBitmapImageRep", true))
        return std::nullopt;
    switch (bitmap.bitsPerPixel()) {
    case 32:
        return answer(oneByte(bitmap, requiredPixelSize, 4, 3));
    case 8:
        return answer(oneByte(bitmap, requiredPixelSize, 1, 0));
    default:
        return answer(unlessMemoryIsShort(
            [&] { return QByteArray(qsizetype{requiredPixelSize} * requiredPixelSize, '\xff'); }));
    }
}

std::optional<QByteArray> IconFamily::get1BitMaskFromBitmapImageRep(const BitmapImageRep& bitmap,
                                                                    qint32 requiredPixelSize) {
    if (!isOfSize(bitmap, requiredPixelSize))
        return std::nullopt;
    if (bitmap.isPlanar()) {
        refuse("get1BitMaskFromBitmapImageRep", QStringLiteral("isPlanar == YES"));
        return std::nullopt;
    }
    const int bits = bitmap.bitsPerPixel();
    const int samples = bitmap.samplesPerPixel();
    const int depth = bitmap.bitsPerSample();
    const bool isTaken =
        (bits == 1 && samples == 1 && depth == 1) || (bits == 8 && samples == 1 && depth == 8) ||
        (bits == 24 && samples == 3 && depth == 8) || (bits == 32 && samples == 4 && depth == 8);
    if (!isTaken) {
        refuse("get1BitMaskFromBitmapImageRep",
               QStringLiteral("bitsPerPixel == %1, samplesPerPixel== %2, bitsPerSample == %3")
                   .arg(bits)
                   .arg(samples)
                   .arg(depth));
        return std::nullopt;
    }
    if (requiredPixelSize % pixelsPerByte != 0)
        return std::nullopt;
    return answer(unlessMemoryIsShort([&] { return bitsTwice(bitmap, requiredPixelSize); }));
}
