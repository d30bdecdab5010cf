#pragma once

#include "base/Result.h"

#include <QString>

class IconFamily;

/// Custom icons of files and folders, in the ForkStore that is in use, with the cause where a step fails.
/// Each operation ends at the first step that fails; what was done until then stays. IconFamily's operations
/// of these names answer no more than whether all steps succeeded.
namespace CustomIcon {

/// What became of an operation.
struct Outcome {
    Result<Done> result;
    /// The error of a step of the file manager. Reading a file's date is one that does not end the operation.
    Result<Done> fileManager = Done{};
};

/// Makes `family` the custom icon of a file, which is made where it is missing.
Outcome setOnFile(const IconFamily& family, const QString& path, bool withCompatibility);

/// Makes `family` the custom icon of a folder.
Outcome setOnFolder(const IconFamily& family, const QString& path, bool withCompatibility);

/// Takes the custom icon off a file.
Outcome removeFromFile(const QString& path);

/// Takes the custom icon off a folder.
Outcome removeFromFolder(const QString& path);

} // namespace CustomIcon
