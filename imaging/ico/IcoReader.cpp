#include "imaging/ico/IcoReader.h"

#include "base/ByteReader.h"
#include "base/ShortMemory.h"
#include "imaging/ico/IcoBitmap.h"
#include "imaging/png/PngHeader.h"
#include "imaging/png/PngReader.h"

#include <algorithm>
#include <tuple>

namespace {

struct FileHeader {
    quint16_le reserved;
    quint16_le type;
    quint16_le count;
};
static_assert(sizeof(FileHeader) == 6);

struct ListEntry {
    quint8 width; ///< 0 stands for 256
    quint8 height;
    quint8 colors;
    quint8 reserved;
    quint16_le planes;
    quint16_le bits;
    quint32_le length;
    quint32_le at;
};
static_assert(sizeof(ListEntry) == 16);

Error damaged(const QString& detail) {
    return PictureReader::damaged(QStringLiteral("ICO"), detail);
}

int told(quint8 side) {
    return side == 0 ? 256 : side;
}

IcoReader::Entry entryOf(const ListEntry& listed, const ByteReader& file) {
    IcoReader::Entry entry{QSize(told(listed.width), told(listed.height)), listed.bits, {}};
    const auto data = file.slice(listed.at, listed.length);
    if (!data)
        return entry;
    entry.data = data->view();
    if (const std::optional<QSize> size = PngHeader::size(entry.data)) {
        entry.size = *size;
        entry.bits = 32;
    } else if (const std::optional<IcoBitmap> bitmap = IcoBitmap::parse(entry.data, entry.size)) {
        entry.size = bitmap->size;
        entry.bits = bitmap->bits;
    }
    return entry;
}

qint64 pixels(const IcoReader::Entry& entry) {
    return qint64{entry.size.width()} * entry.size.height();
}

/// What sorts images: more pixels first; then by size, so that equal ones are neighbours; then more colours.
auto rank(const IcoReader::Entry& entry) {
    return std::tuple(-pixels(entry), entry.size.width(), -entry.bits);
}

} // namespace

Result<IcoReader> IcoReader::open(const QByteArray& bytes) {
    return unlessMemoryIsShort([&]() -> Result<IcoReader> {
        const ByteReader file(bytes);
        const auto header = file.record<FileHeader>(0);
        if (!header)
            return damaged(QStringLiteral("its list of images breaks off"));
        if (header->count == 0)
            return damaged(QStringLiteral("it has no image"));
        std::vector<Entry> all;
        for (int i = 0; i < header->count; ++i) {
            const auto listed = file.record<ListEntry>(sizeof(FileHeader), i);
            if (!listed)
                return damaged(QStringLiteral("its list of images breaks off"));
            all.push_back(entryOf(*listed, file));
        }
        std::ranges::stable_sort(all, {}, rank);
        IcoReader reader;
        const QSize largest = all.front().size;
        for (const Entry& entry : all) {
            const bool isRepeated = !reader.m_entries.empty() && reader.m_entries.back().size == entry.size;
            const bool hasShape = qint64{entry.size.width()} * largest.height() ==
                                  qint64{entry.size.height()} * largest.width();
            if (!isRepeated && hasShape && reader.m_entries.size() < mostSizes)
                reader.m_entries.push_back(entry);
        }
        return reader;
    });
}

Result<DecodedPicture> IcoReader::picture(const Entry& entry) const {
    if (entry.data.isEmpty())
        return damaged(QStringLiteral("an image is not inside of the file"));
    // A small file could list many large pictures.
    if (std::max(entry.size.width(), entry.size.height()) > longestSide)
        return Error{ErrorCode::TooLarge,
                     QStringLiteral("the icon has an image of %1 × %2 pixels; the limit is %3 × %3")
                         .arg(entry.size.width())
                         .arg(entry.size.height())
                         .arg(longestSide)};
    if (entry.data.startsWith(PngHeader::signature))
        return readPng(QByteArray::fromRawData(entry.data.data(), entry.data.size()));
    const std::optional<IcoBitmap> bitmap = IcoBitmap::parse(entry.data, entry.size);
    if (!bitmap)
        return damaged(QStringLiteral("an image is neither a PNG file nor a plain bitmap"));
    return unlessMemoryIsShort([&] { return bitmap->picture(); });
}

Result<DecodedPicture> readIco(const QByteArray& bytes) {
    const Result<IcoReader> reader = IcoReader::open(bytes);
    if (!reader)
        return reader.error();
    return reader->picture(reader->entries().front());
}
