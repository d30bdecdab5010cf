#pragma once

#include <QString>

/// What stands at a path, by the path as it is: a name that begins with a colon is one like any other, which
/// Qt's classes take for a resource in the program. False, or an empty text, for a text that is no path.
namespace FileItem {

/// Whether there is something, where links lead if it is one.
bool exists(const QString& path);

/// Whether there is something, be it a link that leads nowhere.
bool isThere(const QString& path);

/// Whether it is a folder, or a link to one.
bool isFolder(const QString& path);

bool isLink(const QString& path);

/// Its own path from the root, without links. Empty where there is nothing.
QString canonicalPath(const QString& path);

/// `path` from the root: a relative one is below the current folder. "." and ".." are resolved in the text
/// alone.
QString absolutePath(const QString& path);

/// The current folder.
QString currentFolder();

} // namespace FileItem
