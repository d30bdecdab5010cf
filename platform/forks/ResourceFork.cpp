#include "platform/forks/ResourceFork.h"

#include "base/ByteReader.h"
#include "base/ByteWriter.h"
#include "base/ShortMemory.h"

#include <algorithm>
#include <limits>
#include <map>
#include <utility>

namespace {

// Maps are std:: maps: Qt's end the program if memory is short. They are ordered: a fork chooses its types,
// names and offsets, and so which of them collide as hashes.

// The records of a fork, all big-endian.

struct ForkHeader {
    quint32_be dataOffset;
    quint32_be mapOffset;
    quint32_be dataLength;
    quint32_be mapLength;
};
static_assert(sizeof(ForkHeader) == 16);

/// The bytes before the data, for the system (112) and for applications (128).
constexpr qsizetype reservedSize = 112 + 128;

struct MapHeader {
    ForkHeader copy;
    quint32_be nextMap;
    quint16_be file;
    quint16_be attributes;
    quint16_be typeListOffset; ///< from the map's start
    quint16_be nameListOffset; ///< from the map's start
};
static_assert(sizeof(MapHeader) == 28);

struct TypeEntry {
    quint32_be type;
    quint16_be lastIndex;       ///< the number of references less one
    quint16_be referenceOffset; ///< from the type list's start
};
static_assert(sizeof(TypeEntry) == 8);

struct ReferenceEntry {
    qint16_be number;
    quint16_be nameOffset; ///< from the name list's start
    quint32_be dataOffset; ///< from the data's start; the upper 8 bits are the attributes
    quint32_be handle;
};
static_assert(sizeof(ReferenceEntry) == 12);

constexpr quint16 noName = 0xffff;
constexpr quint32 largestDataOffset = 0xffffff;
constexpr qsizetype largestName = 255;
constexpr qsizetype countSize = sizeof(quint16_be);
constexpr qsizetype lengthSize = sizeof(quint32_be);

Error damagedFork(const char* detail) {
    return {ErrorCode::Damaged,
            QStringLiteral("the resource fork is damaged (%1)").arg(QLatin1String(detail))};
}

Error unsupported(const char* detail) {
    return {ErrorCode::Unsupported,
            QStringLiteral("the resources do not fit into a resource fork (%1)").arg(QLatin1String(detail))};
}

/// A resource with the offset of its data, before the data are read.
struct Reference {
    Resource resource;
    quint32 dataOffset = 0;
};

/// Reads the references of a map.
Result<std::vector<Reference>> readReferences(const ByteReader& map, const MapHeader& header) {
    const auto typeList = map.from(header.typeListOffset);
    const auto lastType = typeList ? typeList->bigEndian<quint16>(0) : std::nullopt;
    if (!lastType)
        return damagedFork("the list of types lies outside");
    // 0xFFFF means no types.
    const auto typeCount = static_cast<quint16>(*lastType + 1);
    std::vector<Reference> references;
    ByteCount referenceBytes = 0;
    for (quint16 i = 0; i < typeCount; ++i) {
        const auto type = typeList->record<TypeEntry>(countSize, i);
        if (!type)
            return damagedFork("the list of types breaks off");
        const auto count = static_cast<quint16>(type->lastIndex + 1);
        // Lists that share bytes could claim far more resources than the fork has bytes for.
        referenceBytes = referenceBytes + ByteCount(count) * sizeof(ReferenceEntry);
        if (!referenceBytes.isAtMost(map.size()))
            return damagedFork("there are more references than its map has room for");
        for (quint16 j = 0; j < count; ++j) {
            const auto entry = typeList->record<ReferenceEntry>(type->referenceOffset, j);
            if (!entry)
                return damagedFork("a list of references breaks off");
            Reference reference;
            reference.resource.type = FourCharCode(type->type);
            reference.resource.number = entry->number;
            reference.resource.attributes = static_cast<quint8>(entry->dataOffset >> 24);
            reference.dataOffset = entry->dataOffset & largestDataOffset;
            if (entry->nameOffset != noName) {
                const ByteCount at = ByteCount(header.nameListOffset) + entry->nameOffset;
                const auto length = map.bigEndian<quint8>(at);
                const auto name = length ? map.slice(at + 1, *length) : std::nullopt;
                if (!name)
                    return damagedFork("a name lies outside");
                reference.resource.name = name->view().toByteArray();
            }
            references.push_back(std::move(reference));
        }
    }
    return references;
}

/// The data at each offset that the references name. Several references may share one offset; their data are
/// kept once. Data that begin inside other data are refused.
Result<std::map<quint32, QByteArray>> readData(const ByteReader& section,
                                               const std::vector<Reference>& references) {
    std::map<quint32, QByteArrayView> views;
    for (const Reference& reference : references) {
        const ByteCount at = reference.dataOffset;
        const auto length = section.bigEndian<quint32>(at);
        const auto data = length ? section.slice(at + lengthSize, *length) : std::nullopt;
        if (!data)
            return damagedFork("the data of a resource lie outside");
        views.emplace(reference.dataOffset, data->view());
    }
    std::map<quint32, QByteArray> data;
    qsizetype end = 0;
    for (const auto& [offset, view] : views) {
        if (offset < end)
            return damagedFork("the data of two resources overlap");
        end = offset + lengthSize + view.size();
        data.emplace(offset, view.toByteArray());
    }
    return data;
}

/// The resources of one type, in the order of the fork.
struct TypeGroup {
    FourCharCode type;
    std::vector<const Resource*> resources;
};

std::vector<TypeGroup> grouped(const std::vector<Resource>& resources) {
    std::vector<TypeGroup> groups;
    std::map<quint32, std::size_t> places;
    for (const Resource& resource : resources) {
        const auto [place, isNew] = places.try_emplace(resource.type.value, groups.size());
        if (isNew)
            groups.push_back({resource.type, {}});
        groups[place->second].resources.push_back(&resource);
    }
    return groups;
}

} // namespace

ResourceFork::ResourceFork() : m_reserved(reservedSize, '\0') {}

Result<ResourceFork> ResourceFork::parse(const QByteArray& bytes) {
    const ByteReader fork(bytes);
    const auto header = fork.record<ForkHeader>(0);
    if (!header)
        return damagedFork("it has no header");
    const auto data = fork.slice(header->dataOffset, header->dataLength);
    const auto map = fork.slice(header->mapOffset, header->mapLength);
    const qsizetype start = std::min<qsizetype>(header->dataOffset, header->mapOffset);
    if (!data || !map || start < static_cast<qsizetype>(sizeof(ForkHeader)))
        return damagedFork("its parts lie outside");
    const auto mapHeader = map->record<MapHeader>(0);
    if (!mapHeader)
        return damagedFork("its map breaks off");
    Result<std::vector<Reference>> references = readReferences(*map, *mapHeader);
    if (!references)
        return references.error();
    const Result<std::map<quint32, QByteArray>> contents = readData(*data, *references);
    if (!contents)
        return contents.error();
    ResourceFork result;
    result.m_reserved = bytes.mid(sizeof(ForkHeader), start - static_cast<qsizetype>(sizeof(ForkHeader)));
    result.m_attributes = mapHeader->attributes;
    for (Reference& reference : *references) {
        reference.resource.data = contents->at(reference.dataOffset);
        result.m_resources.push_back(std::move(reference.resource));
    }
    return result;
}

namespace {

constexpr qsizetype largestMapOffset = std::numeric_limits<quint16>::max();

/// The parts of a fork under construction. Resources that shared data still share it in the written fork.
class ForkParts {
  public:
    QByteArray data;
    QByteArray names;
    QByteArray types;
    QByteArray references;

    Result<Done> add(const TypeGroup& group, qsizetype typeListSize) {
        const qsizetype referenceOffset = typeListSize + references.size();
        if (referenceOffset > largestMapOffset || group.resources.size() > std::size_t{largestMapOffset})
            return unsupported("too many resources");
        ByteWriter(types).record(TypeEntry{quint32_be(group.type.value),
                                           quint16_be(static_cast<quint16>(group.resources.size() - 1)),
                                           quint16_be(static_cast<quint16>(referenceOffset))});
        for (const Resource* resource : group.resources) {
            const Result<quint16> name = nameOffset(resource->name);
            if (!name)
                return name.error();
            const Result<quint32> place = dataOffset(resource->data);
            if (!place)
                return place.error();
            const quint32 attributes = static_cast<quint32>(resource->attributes) << 24;
            ByteWriter(references)
                .record(ReferenceEntry{qint16_be(resource->number), quint16_be(*name),
                                       quint32_be(*place | attributes), quint32_be(0)});
        }
        return Done{};
    }

  private:
    Result<quint16> nameOffset(const std::optional<QByteArray>& name) {
        if (!name)
            return quint16{noName};
        if (name->size() > largestName)
            return unsupported("a name is too long");
        if (!m_nameOffsets.contains(*name)) {
            if (names.size() >= noName)
                return unsupported("too many names");
            m_nameOffsets.emplace(*name, static_cast<quint16>(names.size()));
            ByteWriter(names).bigEndian<quint8>(static_cast<quint8>(name->size())).bytes(*name);
        }
        return m_nameOffsets.at(*name);
    }

    Result<quint32> dataOffset(const QByteArray& bytes) {
        // Shared data are recognised by their address in memory.
        const char* place = bytes.isEmpty() ? nullptr : bytes.constData();
        if (place == nullptr || !m_dataOffsets.contains(place)) {
            if (data.size() > qsizetype{largestDataOffset})
                return unsupported("too much data");
            m_dataOffsets.insert_or_assign(place, static_cast<quint32>(data.size()));
            ByteWriter(data).bigEndian<quint32>(static_cast<quint32>(bytes.size())).bytes(bytes);
        }
        return m_dataOffsets.at(place);
    }

    std::map<const char*, quint32> m_dataOffsets;
    std::map<QByteArray, quint16> m_nameOffsets;
};

} // namespace

Result<QByteArray> ResourceFork::data() const {
    ForkParts parts;
    const std::vector<TypeGroup> groups = grouped(m_resources);
    const qsizetype typeListSize =
        countSize + static_cast<qsizetype>(groups.size()) * static_cast<qsizetype>(sizeof(TypeEntry));
    for (const TypeGroup& group : groups) {
        if (const Result<Done> added = parts.add(group, typeListSize); !added)
            return added.error();
    }
    const qsizetype nameList =
        static_cast<qsizetype>(sizeof(MapHeader)) + typeListSize + parts.references.size();
    if (nameList > largestMapOffset)
        return unsupported("too many resources");
    const qsizetype dataOffset = static_cast<qsizetype>(sizeof(ForkHeader)) + m_reserved.size();
    const qsizetype mapLength = nameList + parts.names.size();
    if (dataOffset + parts.data.size() + mapLength > std::numeric_limits<quint32>::max())
        return unsupported("too much data");
    const ForkHeader header{quint32_be(static_cast<quint32>(dataOffset)),
                            quint32_be(static_cast<quint32>(dataOffset + parts.data.size())),
                            quint32_be(static_cast<quint32>(parts.data.size())),
                            quint32_be(static_cast<quint32>(mapLength))};
    MapHeader mapHeader{};
    mapHeader.copy = header;
    mapHeader.attributes = m_attributes;
    mapHeader.typeListOffset = static_cast<quint16>(sizeof(MapHeader));
    mapHeader.nameListOffset = static_cast<quint16>(nameList);
    QByteArray fork;
    ByteWriter writer(fork);
    writer.record(header).bytes(m_reserved).bytes(parts.data).record(mapHeader);
    // The count is stored less one, in 16 bits: 0xFFFF means no types.
    writer.bigEndian<quint16>(static_cast<quint16>(groups.size() + 0xffff));
    writer.bytes(parts.types).bytes(parts.references).bytes(parts.names);
    return fork;
}

const Resource* ResourceFork::resource(FourCharCode type, qint16 number) const {
    const auto found = std::ranges::find_if(m_resources, [&](const Resource& resource) {
        return resource.type == type && resource.number == number;
    });
    return found != m_resources.end() ? &*found : nullptr;
}

bool ResourceFork::isReadOnly() const {
    constexpr quint16 mapReadOnly = 0x80;
    return (m_attributes & mapReadOnly) != 0;
}

Result<Done> ResourceFork::addResource(Resource resource) {
    return unlessMemoryIsShort([&] { m_resources.push_back(std::move(resource)); });
}

bool ResourceFork::removeResource(FourCharCode type, qint16 number) {
    const Resource* found = resource(type, number);
    if (found == nullptr)
        return false;
    m_resources.erase(m_resources.begin() + (found - m_resources.data()));
    return true;
}

void ResourceFork::removeResources(const std::function<bool(const Resource&)>& isMeant) {
    std::erase_if(m_resources, isMeant);
}
