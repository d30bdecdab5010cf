#pragma once

#include "base/Result.h"

#include <QString>

class GenerationInput;

/// The paths of an idiom's files. To make the folder, its path is used as it is. To write a file, percent
/// escapes in the folder's path are replaced if the input says so, as the window does. If the folder chosen
/// there has a name with such an escape, the two paths differ. See docs/compatibility.md.
namespace OutputFolder {

/// The container's name, without its suffix.
inline constexpr char containerName[] = "Application";

/// `outputPathString` with "/idiom/AppIcon.appiconset" or "/android/icons" appended as plain text. The folder
/// is not created, and the path is neither unescaped nor normalised.
QString appiconsetPathString(const QString& outputPathString, const QString& idiom);

/// The path of an idiom's PNG file. NotAPath if the unescaped folder is not a valid path, or if the name
/// leads out of it.
Result<QString> pngPath(const GenerationInput& input, const QString& idiom, const QString& name);

/// The path of the icon container "Application.icns", in the parent of the mac idiom's folder for PNG files.
/// NotAPath if the unescaped folder is not a valid path.
Result<QString> containerPath(const GenerationInput& input, const QString& idiom);

/// Like `pngPath` and `containerPath`, but without replacing escapes in the folder's path.
Result<QString> pngIn(const QString& folder, const QString& name);
QString containerBeside(const QString& folder);

/// The text to show for a PNG file that has no path.
QString shownPngPath(const QString& folder, const QString& name);

} // namespace OutputFolder
