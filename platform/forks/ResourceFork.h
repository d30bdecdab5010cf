#pragma once

#include "base/FourCharCode.h"
#include "base/Result.h"

#include <QByteArray>

#include <functional>
#include <optional>
#include <vector>

/// One resource of a fork.
struct Resource {
    /// The attribute bit of a resource that may not be changed or removed.
    static constexpr quint8 isProtected = 0x08;

    FourCharCode type;
    qint16 number = 0;
    std::optional<QByteArray> name; ///< at most 255 bytes, in the classic text encoding
    quint8 attributes = 0;
    QByteArray data;

    bool operator==(const Resource&) const = default;
};

/// The resources of a file, and the other contents of its resource fork. A value. Copying, `parse` and `data`
/// may throw std::bad_alloc and are for this room only; the classes that open and write forks return an error
/// instead. All integers of the format are big-endian. Source: Inside Macintosh: More Macintosh Toolbox,
/// chapter 1, "Resource File Format".
class ResourceFork {
  public:
    /// A fork without resources.
    ResourceFork();

    /// Damaged if `bytes` are not a complete fork: every resource and name is checked.
    static Result<ResourceFork> parse(const QByteArray& bytes);

    /// The fork's bytes. Unsupported if the resources do not fit into the format's 16-bit offsets, or the
    /// data into its 24-bit offsets.
    Result<QByteArray> data() const;

    /// In the order in which they were read or added. `data` groups them by type.
    const std::vector<Resource>& resources() const { return m_resources; }

    /// The first resource of that type and number, or null.
    const Resource* resource(FourCharCode type, qint16 number) const;

    /// Adds the resource as the last one, even if there is one of the same type and number.
    Result<Done> addResource(Resource resource);

    /// Whether the fork is marked read-only as a whole.
    bool isReadOnly() const;

    /// Removes the first resource of that type and number. Returns whether there was one.
    bool removeResource(FourCharCode type, qint16 number);

    /// Removes all resources that `isMeant` returns true for.
    void removeResources(const std::function<bool(const Resource&)>& isMeant);

    bool operator==(const ResourceFork&) const = default;

  private:
    std::vector<Resource> m_resources;
    /// The bytes between the header and the data, which belong to the system and to applications.
    QByteArray m_reserved;
    quint16 m_attributes = 0;
};
