#include "platform/icns/IcnsEncoding.h"

#include <limits>
#include <optional>

namespace {

std::optional<quint32> read32(QByteArrayView bytes, qsizetype at) {
    if (bytes.size() - at < static_cast<qsizetype>(sizeof(quint32)))
        return std::nullopt;
    return qFromBigEndian<quint32>(bytes.data() + at);
}

QSize sizeFrom(std::optional<quint32> width, std::optional<quint32> height) {
    constexpr quint32 largest = std::numeric_limits<int>::max();
    if (!width || !height || *width > largest || *height > largest)
        return {};
    return {static_cast<int>(*width), static_cast<int>(*height)};
}

QSize pngSize(QByteArrayView file) {
    constexpr qsizetype widthAt = 16;
    return sizeFrom(read32(file, widthAt), read32(file, widthAt + 4));
}

/// Of a codestream; what stands left of and above the picture's origin is no part of it.
QSize codestreamSize(QByteArrayView stream) {
    constexpr qsizetype extentAt = 8;
    const auto right = read32(stream, extentAt);
    const auto bottom = read32(stream, extentAt + 4);
    const auto left = read32(stream, extentAt + 8);
    const auto top = read32(stream, extentAt + 12);
    if (!left || !top || *left > *right || *top > *bottom)
        return {};
    return sizeFrom(*right - *left, *bottom - *top);
}

constexpr char codestreamStart[] = "\xFF\x4F\xFF\x51";

/// Of the first codestream in a JP2 file: that is the one that is shown.
QSize jp2Size(QByteArrayView file) {
    constexpr quint32 codestreamBox = 0x6a703263;
    qsizetype at = 0;
    for (;;) {
        const auto length = read32(file, at);
        const auto box = read32(file, at + 4);
        if (!length || !box)
            return {};
        qsizetype header = 8;
        quint64 size = *length;
        if (*length == 1) {
            const auto high = read32(file, at + 8);
            const auto low = read32(file, at + 12);
            if (!high || !low)
                return {};
            size = quint64{*high} << 32 | *low;
            header = 16;
        }
        const qsizetype rest = file.size() - at;
        // A box of length 0 reaches to the end.
        if (*length == 0)
            size = static_cast<quint64>(rest);
        if (size < static_cast<quint64>(header))
            return {};
        if (*box == codestreamBox) {
            const QByteArrayView stream = file.sliced(at + header);
            return stream.startsWith(codestreamStart) ? codestreamSize(stream) : QSize();
        }
        if (size >= static_cast<quint64>(rest))
            return {};
        at += static_cast<qsizetype>(size);
    }
}

IcnsPictureInfo pictureInfo(const IcnsElementType& type, QByteArrayView data) {
    if (data.startsWith("\x89PNG"))
        return {IcnsEncoding::Png, pngSize(data)};
    if (data.startsWith(QByteArrayView("\0\0\0\x0cjP  ", 8)))
        return {IcnsEncoding::Jpeg2000, jp2Size(data)};
    if (data.startsWith(codestreamStart))
        return {IcnsEncoding::Jpeg2000, codestreamSize(data)};
    if (data.startsWith(argbMark))
        return {IcnsEncoding::PackedArgb, {type.pixelSize, type.pixelSize}};
    // The type of 1024 pixels is also stored with 512.
    for (const int side : {type.pixelSize, type.pixelSize / 2}) {
        const bool isAllowed = side == type.pixelSize || type.code == FourCharCode("ic10");
        if (isAllowed && data.size() == qsizetype{4} * side * side)
            return {IcnsEncoding::PlainArgb, {side, side}};
    }
    return {};
}

} // namespace

IcnsPictureInfo icnsPictureInfo(const IcnsElementType& type, QByteArrayView data) {
    const QSize square(type.pixelSize, type.pixelSize);
    switch (type.content) {
    case IcnsContent::Picture:
        return pictureInfo(type, data);
    case IcnsContent::Colors:
        return {data.size() == qsizetype{4} * type.pixelSize * type.pixelSize ? IcnsEncoding::PlainArgb
                                                                              : IcnsEncoding::PackedColors,
                square};
    case IcnsContent::Mask:
        break;
    }
    return {IcnsEncoding::Mask, square};
}
