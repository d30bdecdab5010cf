#pragma once

#include <QString>

/// A reference to an item that exists.
struct FSRef {
    QString path; ///< absolute, without links
};

/// What paths are asked for besides what a text can.
namespace CarbonFSRefCreation {

/// Fills `reference` with the item of that name; whether there is one. Where there is none and
/// `createFileIfNecessary` is set, an empty file is made first.
bool getFSRef(const QString& path, FSRef& reference, bool createFileIfNecessary);

} // namespace CarbonFSRefCreation
