#pragma once

#include "base/FourCharCode.h"
#include "base/Result.h"

#include <QByteArray>

#include <optional>
#include <vector>

/// One resource of a fork.
struct Resource {
    /// The attribute of a resource that may be neither changed nor removed.
    static constexpr quint8 isProtected = 0x08;

    FourCharCode type;
    qint16 number = 0;
    std::optional<QByteArray> name; ///< at most 255 bytes, in the classic text encoding
    quint8 attributes = 0;
    QByteArray data;

    bool operator==(const Resource&) const = default;
};

/// The resources of a file and what else its resource fork holds. A value: to copy one may throw
/// std::bad_alloc, as `parse` and `data` may, which belong to this room; what opens and writes forks tells of
/// it instead. Source of the format: Inside Macintosh: More Macintosh Toolbox, chapter 1, "Resource File
/// Format"; all integers are big-endian.
class ResourceFork {
  public:
    /// A fork without resources.
    ResourceFork();

    /// Damaged where `bytes` are no whole fork, down to the last resource and name.
    static Result<ResourceFork> parse(const QByteArray& bytes);

    /// The fork's bytes. Unsupported where there are more resources than its 16-bit offsets or more data than
    /// its 24-bit ones can tell.
    Result<QByteArray> data() const;

    /// In the order in which they were read and added. `data` groups them by type.
    const std::vector<Resource>& resources() const { return m_resources; }

    /// The first resource of that type and number, or null.
    const Resource* resource(FourCharCode type, qint16 number) const;

    /// Puts the resource behind the others, even where there is one of its type and number.
    Result<Done> addResource(Resource resource);

    /// Whether the whole fork is meant to stay as it is.
    bool isReadOnly() const;

    /// Takes the first resource of that type and number out; whether there was one.
    bool removeResource(FourCharCode type, qint16 number);

    bool operator==(const ResourceFork&) const = default;

  private:
    std::vector<Resource> m_resources;
    /// What stands between the header and the data: the system's and the applications' own bytes.
    QByteArray m_reserved;
    quint16 m_attributes = 0;
};
