#include "imaging/png/PngExtras.h"

#include "base/ByteReader.h"
#include "imaging/png/PngHeader.h"

#include <optional>

namespace {

/// What follows the first NUL; empty without one.
QByteArrayView behindNul(QByteArrayView text) {
    const qsizetype end = text.indexOf('\0');
    return end < 0 ? QByteArrayView() : text.sliced(end + 1);
}

/// The data of the first chunk of `type` that begins with `start`. The search ends before a chunk of the type
/// `end`.
std::optional<QByteArrayView> findChunk(QByteArrayView file, FourCharCode type, QByteArrayView start,
                                        FourCharCode end = PngHeader::endType) {
    constexpr qsizetype frame = 8;    // length and type
    constexpr qsizetype checksum = 4; // behind the data
    auto rest = ByteReader(file).from(PngHeader::signature.size());
    while (rest) {
        const auto length = rest->bigEndian<quint32>(0);
        const auto found = rest->fourCharCode(4);
        const auto data = length && found ? rest->slice(frame, *length) : std::nullopt;
        if (!data || *found == end)
            return std::nullopt;
        if (*found == type && data->view().startsWith(start))
            return data->view();
        rest = rest->from(ByteCount(frame) + *length + checksum);
    }
    return std::nullopt;
}

} // namespace

QByteArrayView pngXmp(QByteArrayView file) {
    // The keyword, and that what follows is not compressed.
    constexpr QByteArrayView start("XML:com.adobe.xmp\0\0\0", 20);
    const std::optional<QByteArrayView> text = findChunk(file, "iTXt", start);
    // The language and a translated keyword stand before the text.
    return text ? behindNul(behindNul(text->sliced(start.size()))) : QByteArrayView();
}

quint32 pngFrames(QByteArrayView file) {
    const std::optional<QByteArrayView> control = findChunk(file, "acTL", {}, PngHeader::pixelsType);
    return control ? ByteReader(*control).bigEndian<quint32>(0).value_or(1) : 1;
}
