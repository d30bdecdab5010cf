#pragma once

#include <QString>

/// Questions about the item at a path. A name may be any bytes and begin with a colon; Qt's classes would
/// take such a name for a resource in the program. The answer for an invalid path is false or an empty text.
namespace FileItem {

/// Whether there is an item. Links are followed.
bool exists(const QString& path);

/// Whether there is an item. A link counts, even if its target does not exist.
bool isThere(const QString& path);

/// Whether the item is a folder. Links are followed.
bool isFolder(const QString& path);

bool isLink(const QString& path);

/// What tells one state of a file from another; all zero where there is no file.
struct Stamp {
    quint64 device = 0;
    quint64 file = 0;
    qint64 bytes = 0;
    qint64 changedAt = 0; ///< nanoseconds

    bool isThere() const { return file != 0; }
    bool operator==(const Stamp&) const = default;
};

/// The state of the file. Links are followed.
Stamp stamp(const QString& path);

/// The absolute path of the item with all links resolved. Empty if there is no item.
QString canonicalPath(const QString& path);

/// The absolute form of `path`, which may be relative to the current folder. "." and ".." are removed without
/// looking at links.
QString absolutePath(const QString& path);

/// The absolute path of the current folder.
QString currentFolder();

} // namespace FileItem
