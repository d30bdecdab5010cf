#pragma once

#include "base/Result.h"
#include "platform/forks/FinderInfo.h"

#include <QByteArray>

#include <vector>

/// An AppleDouble file, version 2: what a file has besides its data. It is kept in the same folder, under the
/// file's name with "._" before it. A value. Entries other than the resource fork and the Finder information
/// stay as they are. Its operations are for this room only and may throw std::bad_alloc; the store turns that
/// into an error. Source: RFC 1740, appendix B.
class AppleDouble {
  public:
    /// Empty: no resource fork, no Finder information.
    AppleDouble() = default;

    /// Damaged if `bytes` are not a complete AppleDouble file. Unsupported for another version, or for more
    /// than 256 entries.
    static Result<AppleDouble> parse(const QByteArray& bytes);

    /// The file's bytes. Finder information comes first and the resource fork last. Both are written even if
    /// they are empty: macOS does not read a file without them.
    QByteArray data() const;

    /// Empty if the file has no resource fork.
    QByteArray resourceFork() const;
    void setResourceFork(const QByteArray& fork);

    /// All zero if the file has no Finder information.
    FinderInfo finderInfo() const;
    void setFinderInfo(const FinderInfo& info);

  private:
    struct Entry {
        quint32 identifier;
        QByteArray data;
        qsizetype offset; ///< in the file that was parsed; 0 for a new entry
    };

    Entry& entry(quint32 identifier);
    const Entry* find(quint32 identifier) const;

    std::vector<Entry> m_entries;
    QByteArray m_filler = QByteArrayLiteral("Mac OS X        ");
};
