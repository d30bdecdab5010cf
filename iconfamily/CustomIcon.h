#pragma once

#include "base/Result.h"

#include <QString>

class IconFamily;

/// Custom icons of files and folders, in the ForkStore in use. Each operation ends at the first step that
/// fails and returns its cause; the steps before it stay done. IconFamily's operations of the same purpose
/// return only whether all steps succeeded.
namespace CustomIcon {

/// The result of an operation.
struct Outcome {
    Result<Done> result;
    /// The error of a file manager step. A failure to read a file's date is stored here and does not end the
    /// operation.
    Result<Done> fileManager = Done{};
};

/// Makes `family` the custom icon of a file. A missing file is made.
Outcome setOnFile(const IconFamily& family, const QString& path, bool withCompatibility);

/// Makes `family` the custom icon of a folder.
Outcome setOnFolder(const IconFamily& family, const QString& path, bool withCompatibility);

/// Removes the custom icon of a file.
Outcome removeFromFile(const QString& path);

/// Removes the resources that `withCompatibility` added to a file, also those of earlier icons. `setOnFile`
/// only adds such resources, and `removeFromFile` leaves them. Does nothing if the file has none.
Result<Done> removeCompatibility(const QString& path);

/// Removes the custom icon of a folder.
Outcome removeFromFolder(const QString& path);

} // namespace CustomIcon
