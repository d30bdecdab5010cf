#include "platform/forks/AppleDouble.h"

#include <QtEndian>

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace {

constexpr quint32 magic = 0x00051607;
constexpr quint32 version2 = 0x00020000;
constexpr quint32 resourceForkEntry = 2;
constexpr quint32 finderInfoEntry = 9;

struct FileHeader {
    quint32_be magic;
    quint32_be version;
    char filler[16];
    quint16_be entryCount;
};
constexpr qsizetype fileHeaderSize = 26; // what follows is not aligned
static_assert(offsetof(FileHeader, entryCount) + sizeof(quint16_be) == fileHeaderSize);

struct EntryHeader {
    quint32_be identifier;
    quint32_be offset; ///< from the file's start
    quint32_be length;
};
static_assert(sizeof(EntryHeader) == 12);

// macOS keeps extended attributes behind the Finder information, in the same entry, and tells their places
// from the file's start: where the entry moves, they move along.

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

struct AttributeHeader {
    quint32_be offset; ///< of the value, from the file's start
    quint32_be length;
    quint16_be flags;
    quint8 nameLength; ///< the name follows; then as many bytes as make the whole a multiple of 4
};
constexpr qsizetype attributeHeaderSize = 11;
static_assert(offsetof(AttributeHeader, nameLength) + 1 == attributeHeaderSize);

constexpr quint32 attributesMagic = 0x41545452;
constexpr qsizetype attributesAt = FinderInfo::size + 2;

Error damaged(const char* detail) {
    return {ErrorCode::Damaged,
            QStringLiteral("the AppleDouble file is damaged (%1)").arg(QLatin1String(detail))};
}

template <typename Record>
bool read(QByteArrayView bytes, qsizetype at, qsizetype size, Record& record) {
    if (at > bytes.size() || size > bytes.size() - at)
        return false;
    std::memcpy(&record, bytes.data() + at, static_cast<std::size_t>(size));
    return true;
}

template <typename Record>
void append(QByteArray& bytes, const Record& record) {
    bytes.append(reinterpret_cast<const char*>(&record), sizeof record);
}

void write(QByteArray& bytes, qsizetype at, quint32_be value) {
    std::memcpy(bytes.data() + at, &value, sizeof value);
}

/// The Finder information's entry with the places of its attributes moved by `distance`.
QByteArray moved(QByteArray entry, qsizetype distance) {
    AttributesHeader header{};
    if (distance == 0 || !read(entry, attributesAt, sizeof header, header) || header.magic != attributesMagic)
        return entry;
    const auto by = static_cast<quint32>(distance);
    write(entry, attributesAt + offsetof(AttributesHeader, totalSize), quint32_be(header.totalSize + by));
    write(entry, attributesAt + offsetof(AttributesHeader, dataStart), quint32_be(header.dataStart + by));
    qsizetype at = attributesAt + static_cast<qsizetype>(sizeof header);
    for (int i = 0; i < header.count; ++i) {
        AttributeHeader attribute{};
        if (!read(entry, at, attributeHeaderSize, attribute))
            break;
        write(entry, at, quint32_be(attribute.offset + by));
        constexpr qsizetype alignment = 4;
        const qsizetype length = attributeHeaderSize + attribute.nameLength;
        at += (length + alignment - 1) / alignment * alignment;
    }
    return entry;
}

} // namespace

Result<AppleDouble> AppleDouble::parse(const QByteArray& bytes) {
    FileHeader header{};
    if (!read(bytes, 0, fileHeaderSize, header) || header.magic != magic)
        return damaged("it does not begin as one");
    if (header.version != version2)
        return Error{ErrorCode::Unsupported, QStringLiteral("the AppleDouble file is of an unknown version")};
    constexpr qsizetype mostEntries = 256;
    const Error tooMany{ErrorCode::Unsupported,
                        QStringLiteral("the AppleDouble file has %1 entries").arg(header.entryCount)};
    if (header.entryCount > mostEntries)
        return tooMany;
    AppleDouble result;
    result.m_filler = QByteArray(header.filler, sizeof header.filler);
    qsizetype total = 0;
    for (qsizetype i = 0; i < header.entryCount; ++i) {
        EntryHeader entry{};
        const qsizetype at = fileHeaderSize + i * static_cast<qsizetype>(sizeof entry);
        if (!read(bytes, at, sizeof entry, entry))
            return damaged("its list of entries breaks off");
        const qsizetype offset = entry.offset;
        const qsizetype length = entry.length;
        // Entries that share bytes could stand for far more than there are.
        total += length;
        if (offset > bytes.size() || length > bytes.size() - offset || total > bytes.size())
            return damaged("an entry lies outside");
        if (result.find(entry.identifier) != nullptr)
            return damaged("an entry is there twice");
        result.m_entries.push_back({entry.identifier, bytes.mid(offset, length), offset});
    }
    // The two that are always written count even where they are not there yet.
    const bool hasInfo = result.find(finderInfoEntry) != nullptr;
    const bool hasFork = result.find(resourceForkEntry) != nullptr;
    if (header.entryCount + (hasInfo ? 0 : 1) + (hasFork ? 0 : 1) > mostEntries)
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
    FileHeader header{};
    header.magic = magic;
    header.version = version2;
    std::memcpy(header.filler, m_filler.constData(), sizeof header.filler);
    header.entryCount = static_cast<quint16>(ordered.size());
    QByteArray headers;
    headers.append(reinterpret_cast<const char*>(&header), fileHeaderSize);
    qsizetype offset = fileHeaderSize + static_cast<qsizetype>(ordered.size() * sizeof(EntryHeader));
    QByteArray contents;
    for (const Entry* entry : ordered) {
        append(headers, EntryHeader{quint32_be(entry->identifier), quint32_be(static_cast<quint32>(offset)),
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
