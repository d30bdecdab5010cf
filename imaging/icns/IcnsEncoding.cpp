#include "imaging/icns/IcnsEncoding.h"

#include "imaging/formats/Jpeg2000Codestream.h"
#include "imaging/icns/IcnsRle.h"
#include "imaging/png/PngHeader.h"

#include <optional>

namespace {

/// The size of a JPEG 2000 file or codestream. Invalid also for more tiles than a small picture needs: each
/// takes memory before anything is decoded.
QSize jpeg2000Size(QByteArrayView file) {
    constexpr quint64 mostTiles = 1024;
    const auto codestream = Jpeg2000Codestream::find(file);
    const auto told = codestream ? Jpeg2000Codestream::size(*codestream) : std::nullopt;
    return told && told->tiles <= mostTiles ? told->pixels : QSize();
}

bool isPackedArgb(QByteArrayView data, int side) {
    const auto pixels = static_cast<std::size_t>(side) * static_cast<std::size_t>(side);
    std::optional<QByteArrayView> rest = data.sliced(argbMark.size());
    for (int i = 0; i < 4 && rest; ++i)
        rest = IcnsRle::skip(*rest, pixels);
    return rest.has_value();
}

/// The side in pixels of plain samples of `length` bytes; 0 where plain samples can't have this length.
int plainSide(const IcnsElementType& type, qsizetype length) {
    // An element of the type of 1024 pixels may hold 512.
    for (const int side : {type.pixelSize, type.pixelSize / 2}) {
        const bool isAllowed = side == type.pixelSize || type.code == FourCharCode("ic10");
        if (isAllowed && length == qsizetype{4} * side * side)
            return side;
    }
    return 0;
}

IcnsPictureInfo pictureInfo(const IcnsElementType& type, QByteArrayView data) {
    // Plain samples may begin like a file. So where the length is exactly that of plain samples, more than
    // the first bytes is checked.
    const int side = plainSide(type, data.size());
    if (const std::optional<QSize> png = PngHeader::size(data);
        png || (side == 0 && data.startsWith(PngHeader::signature)))
        return {IcnsEncoding::Png, png.value_or(QSize())};
    if (data.startsWith(QByteArrayView("\0\0\0\x0cjP  ", 8)) && (side == 0 || jpeg2000Size(data).isValid()))
        return {IcnsEncoding::Jpeg2000, jpeg2000Size(data)};
    if (data.startsWith(Jpeg2000Codestream::start) && (side == 0 || Jpeg2000Codestream::isWellFormed(data)))
        return {IcnsEncoding::Jpeg2000, jpeg2000Size(data)};
    if (data.startsWith(argbMark) && (side == 0 || isPackedArgb(data, type.pixelSize)))
        return {IcnsEncoding::PackedArgb, type.size()};
    if (side != 0)
        return {IcnsEncoding::PlainArgb, {side, side}};
    return {};
}

} // namespace

IcnsPictureInfo icnsPictureInfo(const IcnsElementType& type, QByteArrayView data) {
    switch (type.content) {
    case IcnsContent::Picture:
        return pictureInfo(type, data);
    case IcnsContent::Colors:
        return {data.size() == qsizetype{4} * type.pixelSize * type.pixelSize ? IcnsEncoding::PlainArgb
                                                                              : IcnsEncoding::PackedColors,
                type.size()};
    case IcnsContent::Mask:
        break;
    }
    return {IcnsEncoding::Mask, type.size()};
}
