#include "platform/icns/IcnsEncoding.h"

#include "platform/icns/IcnsRle.h"

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

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

constexpr QByteArrayView pngSignature("\x89PNG\r\n\x1a\n");

/// Invalid unless the first chunk is IHDR.
QSize pngSize(QByteArrayView file) {
    constexpr qsizetype widthAt = 16;
    if (!file.sliced(pngSignature.size()).startsWith(QByteArrayView("\0\0\0\x0dIHDR", 8)))
        return {};
    return sizeFrom(read32(file, widthAt), read32(file, widthAt + 4));
}

/// The tiles between `start` and `end`, of which the first begins at `origin`; too many where that can't be.
quint64 tileCount(quint32 origin, quint32 size, quint32 end) {
    return size == 0 || origin > end ? ~quint64{0} >> 32 : (quint64{end} - origin + size - 1) / size;
}

/// Of a codestream; what stands left of and above the picture's origin is no part of it. Invalid also for
/// more tiles than a small picture has use for: each takes memory before anything is decoded.
QSize codestreamSize(QByteArrayView stream) {
    constexpr qsizetype extentAt = 8;
    std::array<quint32, 8> values{};
    for (std::size_t i = 0; i < values.size(); ++i) {
        const auto value = read32(stream, extentAt + 4 * static_cast<qsizetype>(i));
        if (!value)
            return {};
        values[i] = *value;
    }
    const auto [right, bottom, left, top, tileWidth, tileHeight, tileLeft, tileTop] = values;
    constexpr quint64 mostTiles = 1024;
    const quint64 tiles = tileCount(tileLeft, tileWidth, right) * tileCount(tileTop, tileHeight, bottom);
    if (left > right || top > bottom || tiles > mostTiles)
        return {};
    return sizeFrom(right - left, bottom - top);
}

/// Whether the length of the size marker agrees with its number of components.
bool isCodestream(QByteArrayView stream) {
    constexpr qsizetype lengthAt = 4;
    constexpr qsizetype componentsAt = 40;
    if (stream.size() < componentsAt + 2)
        return false;
    return qFromBigEndian<quint16>(stream.data() + lengthAt) ==
           38 + 3 * qFromBigEndian<quint16>(stream.data() + componentsAt);
}

bool isPackedArgb(QByteArrayView data, int side) {
    std::vector<std::uint8_t> channel(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
    std::optional<QByteArrayView> rest = data.sliced(argbMark.size());
    for (int i = 0; i < 4 && rest; ++i)
        rest = IcnsRle::unpack(*rest, channel);
    return rest.has_value();
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

/// The side of plain samples of that length; 0 where it is none.
int plainSide(const IcnsElementType& type, qsizetype length) {
    // The type of 1024 pixels is also stored with 512.
    for (const int side : {type.pixelSize, type.pixelSize / 2}) {
        const bool isAllowed = side == type.pixelSize || type.code == FourCharCode("ic10");
        if (isAllowed && length == qsizetype{4} * side * side)
            return side;
    }
    return 0;
}

IcnsPictureInfo pictureInfo(const IcnsElementType& type, QByteArrayView data) {
    // Plain samples may begin as a file does: where their length is just right, a beginning is not enough.
    const int side = plainSide(type, data.size());
    if (data.startsWith(pngSignature) && (side == 0 || pngSize(data).isValid()))
        return {IcnsEncoding::Png, pngSize(data)};
    if (data.startsWith(QByteArrayView("\0\0\0\x0cjP  ", 8)) && (side == 0 || jp2Size(data).isValid()))
        return {IcnsEncoding::Jpeg2000, jp2Size(data)};
    if (data.startsWith(codestreamStart) && (side == 0 || isCodestream(data)))
        return {IcnsEncoding::Jpeg2000, codestreamSize(data)};
    if (data.startsWith(argbMark) && (side == 0 || isPackedArgb(data, type.pixelSize)))
        return {IcnsEncoding::PackedArgb, {type.pixelSize, type.pixelSize}};
    if (side != 0)
        return {IcnsEncoding::PlainArgb, {side, side}};
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
