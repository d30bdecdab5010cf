#include "platform/forks/AppleDouble.h"

#include "base/ByteReader.h"
#include "base/ByteWriter.h"

#include <algorithm>
#include <cstddef>

namespace {

constexpr quint32 magic = 0x00051607;
constexpr quint32 version2 = 0x00020000;
constexpr quint32 resourceForkEntry = 2;
constexpr quint32 finderInfoEntry = 9;

struct FileHeader {
    quint32_be magic;
    quint32_be version;
    char filler[16];
};
static_assert(sizeof(FileHeader) == 24);

/// The number of entries, in 16 bits, follows the header; the entries follow it.
constexpr qsizetype entriesAt = sizeof(FileHeader) + sizeof(quint16);

struct EntryHeader {
    quint32_be identifier;
    quint32_be offset; ///< from the file's start
    quint32_be length;
};
static_assert(sizeof(EntryHeader) == 12);

// macOS keeps extended attributes after the Finder information, in the same entry. Their offsets count from
// the file's start, so they change when the entry moves.

struct AttributesHeader {
    quint32_be magic;
    quint32_be tag;
    quint32_be totalSize; ///< the end of the last value, from the file's start
    quint32_be dataStart; ///< from the file's start
    quint32_be dataLength;
    quint32_be reserved[3];
    quint16_be flags;
    quint16_be count;
};
static_assert(sizeof(AttributesHeader) == 36);

// An attribute: the offset of its value from the file's start and the value's length, in 32 bits each; flags
// in 16 bits; the name's length in 8 bits; the name; padding to a multiple of 4 bytes.
constexpr qsizetype nameLengthAt = sizeof(quint32) + sizeof(quint32) + sizeof(quint16);
constexpr qsizetype nameAt = nameLengthAt + qsizetype{sizeof(quint8)};

constexpr quint32 attributesMagic = 0x41545452;
constexpr qsizetype attributesAt = FinderInfo::size + 2;

Error damagedAppleDouble(const char* detail) {
    return {ErrorCode::Damaged,
            QStringLiteral("the AppleDouble file is damaged (%1)").arg(QLatin1String(detail))};
}

/// The Finder information's entry with the offsets of its attributes moved by `distance`.
QByteArray moved(QByteArray entry, qsizetype distance) {
    const auto header = ByteReader(entry).record<AttributesHeader>(attributesAt);
    if (distance == 0 || !header || header->magic != attributesMagic)
        return entry;
    ByteWriter writer(entry);
    const auto move = [&](ByteCount at, qint64 place) {
        writer.replaceBigEndian<quint32>(at, static_cast<quint32>(place + distance));
    };
    move(attributesAt + offsetof(AttributesHeader, totalSize), header->totalSize);
    move(attributesAt + offsetof(AttributesHeader, dataStart), header->dataStart);
    qsizetype at = attributesAt + qsizetype{sizeof(AttributesHeader)};
    for (int i = 0; i < header->count; ++i) {
        const ByteReader attributes(entry);
        const auto place = attributes.bigEndian<quint32>(at);
        const auto nameLength = attributes.bigEndian<quint8>(at + nameLengthAt);
        if (!place || !nameLength)
            break;
        move(at, *place);
        constexpr qsizetype alignment = 4;
        const qsizetype length = nameAt + *nameLength;
        at += (length + alignment - 1) / alignment * alignment;
    }
    return entry;
}

} // namespace

Result<AppleDouble> AppleDouble::parse(const QByteArray& bytes) {
    const ByteReader file(bytes);
    const auto header = file.record<FileHeader>(0);
    const auto entryCount = file.bigEndian<quint16>(sizeof(FileHeader));
    if (!header || !entryCount || header->magic != magic)
        return damagedAppleDouble("it does not begin like an AppleDouble file");
    if (header->version != version2)
        return Error{ErrorCode::Unsupported, QStringLiteral("the AppleDouble file is of an unknown version")};
    constexpr qsizetype mostEntries = 256;
    const Error tooMany{ErrorCode::Unsupported,
                        QStringLiteral("the AppleDouble file has %1 entries").arg(*entryCount)};
    if (*entryCount > mostEntries)
        return tooMany;
    AppleDouble result;
    result.m_filler = QByteArray(header->filler, sizeof header->filler);
    ByteCount total = 0;
    for (int i = 0; i < *entryCount; ++i) {
        const auto entry = file.record<EntryHeader>(entriesAt, i);
        if (!entry)
            return damagedAppleDouble("its list of entries breaks off");
        const auto data = file.slice(entry->offset, entry->length);
        // Entries that share bytes could claim far more data than the file has.
        total = total + entry->length;
        if (!data || !total.isAtMost(file.size()))
            return damagedAppleDouble("an entry points outside of the file");
        if (result.find(entry->identifier) != nullptr)
            return damagedAppleDouble("it has two entries of one kind");
        result.m_entries.push_back({entry->identifier, data->view().toByteArray(), entry->offset});
    }
    // Finder information and resource fork are always written, so they count even if the file does not have
    // them yet.
    const bool hasInfo = result.find(finderInfoEntry) != nullptr;
    const bool hasFork = result.find(resourceForkEntry) != nullptr;
    if (*entryCount + (hasInfo ? 0 : 1) + (hasFork ? 0 : 1) > mostEntries)
        return tooMany;
    return result;
}

QByteArray AppleDouble::data() const {
    const Entry emptyInfo{finderInfoEntry, QByteArray(FinderInfo::size, '\0'), 0};
    const Entry emptyFork{resourceForkEntry, {}, 0};
    std::vector<const Entry*> ordered;
    ordered.reserve(m_entries.size() + 2);
    for (const Entry& entry : m_entries)
        ordered.push_back(&entry);
    if (find(finderInfoEntry) == nullptr)
        ordered.push_back(&emptyInfo);
    if (find(resourceForkEntry) == nullptr)
        ordered.push_back(&emptyFork);
    const auto rank = [](const Entry* entry) {
        return entry->identifier == finderInfoEntry ? 0 : entry->identifier == resourceForkEntry ? 2 : 1;
    };
    std::ranges::stable_sort(ordered, {}, rank);
    FileHeader header{quint32_be(magic), quint32_be(version2), {}};
    std::ranges::copy(m_filler, header.filler);
    QByteArray headers;
    ByteWriter writer(headers);
    writer.record(header).bigEndian<quint16>(static_cast<quint16>(ordered.size()));
    qsizetype offset = entriesAt + static_cast<qsizetype>(ordered.size() * sizeof(EntryHeader));
    QByteArray contents;
    for (const Entry* entry : ordered) {
        writer.record(EntryHeader{quint32_be(entry->identifier), quint32_be(static_cast<quint32>(offset)),
                                  quint32_be(static_cast<quint32>(entry->data.size()))});
        const bool mayMove = entry->identifier == finderInfoEntry && entry->offset != 0;
        contents += mayMove ? moved(entry->data, offset - entry->offset) : entry->data;
        offset += entry->data.size();
    }
    return headers + contents;
}

QByteArray AppleDouble::resourceFork() const {
    const Entry* found = find(resourceForkEntry);
    return found != nullptr ? found->data : QByteArray();
}

void AppleDouble::setResourceFork(const QByteArray& fork) {
    entry(resourceForkEntry).data = fork;
}

FinderInfo AppleDouble::finderInfo() const {
    const Entry* found = find(finderInfoEntry);
    return found != nullptr ? FinderInfo(found->data) : FinderInfo();
}

void AppleDouble::setFinderInfo(const FinderInfo& info) {
    QByteArray& bytes = entry(finderInfoEntry).data;
    bytes.replace(0, FinderInfo::size, info.bytes());
}

const AppleDouble::Entry* AppleDouble::find(quint32 identifier) const {
    const auto found = std::ranges::find(m_entries, identifier, &Entry::identifier);
    return found != m_entries.end() ? &*found : nullptr;
}

AppleDouble::Entry& AppleDouble::entry(quint32 identifier) {
    const auto found = std::ranges::find(m_entries, identifier, &Entry::identifier);
    if (found != m_entries.end())
        return *found;
    return m_entries.emplace_back(Entry{identifier, {}, 0});
}
