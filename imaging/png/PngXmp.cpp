#include "imaging/png/PngXmp.h"

#include "base/ByteReader.h"
#include "imaging/png/PngHeader.h"

namespace {

/// What follows the first NUL; empty without one.
QByteArrayView behindNul(QByteArrayView text) {
    const qsizetype end = text.indexOf('\0');
    return end < 0 ? QByteArrayView() : text.sliced(end + 1);
}

} // namespace

QByteArrayView pngXmp(QByteArrayView file) {
    constexpr FourCharCode textType("iTXt");
    // The keyword, and that what follows is not compressed.
    constexpr QByteArrayView start("XML:com.adobe.xmp\0\0\0", 20);
    constexpr qsizetype frame = 8;    // length and type
    constexpr qsizetype checksum = 4; // behind the data
    auto rest = ByteReader(file).from(PngHeader::signature.size());
    while (rest) {
        const auto length = rest->bigEndian<quint32>(0);
        const auto type = rest->fourCharCode(4);
        const auto data = length && type ? rest->slice(frame, *length) : std::nullopt;
        if (!data)
            return {};
        // The language and a translated keyword stand before the text.
        if (*type == textType && data->view().startsWith(start))
            return behindNul(behindNul(data->view().sliced(start.size())));
        rest = rest->from(ByteCount(frame) + *length + checksum);
    }
    return {};
}
