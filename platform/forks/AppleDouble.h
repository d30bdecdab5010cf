#pragma once

#include "base/Result.h"
#include "platform/forks/FinderInfo.h"

#include <QByteArray>

#include <vector>

/// An AppleDouble file, version 2: what a file has besides its data, beside it under the name "._" and the
/// file's. A value. Entries that are not asked for here stay as they are. Its operations
/// belong to this room and may throw std::bad_alloc, of which the store tells instead. Source: RFC 1740,
/// appendix B.
class AppleDouble {
  public:
    /// One with nothing in it.
    AppleDouble() = default;

    /// Damaged where `bytes` are no whole AppleDouble file, Unsupported for another version and for more
    /// entries than anybody writes.
    static Result<AppleDouble> parse(const QByteArray& bytes);

    /// The file. Finder information comes first and the resource fork last, and both are there even where
    /// they are empty: macOS reads no other.
    QByteArray data() const;

    /// Empty without one.
    QByteArray resourceFork() const;
    void setResourceFork(const QByteArray& fork);

    /// All zero without any.
    FinderInfo finderInfo() const;
    void setFinderInfo(const FinderInfo& info);

  private:
    struct Entry {
        quint32 identifier;
        QByteArray data;
        qsizetype offset; ///< in the file that it was read from; 0 for a new one
    };

    Entry& entry(quint32 identifier);
    const Entry* find(quint32 identifier) const;

    std::vector<Entry> m_entries;
    QByteArray m_filler = QByteArrayLiteral("Mac OS X        ");
};
