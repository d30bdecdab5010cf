#pragma once

#include "base/Result.h"

#include <QString>

/// Where the files of an idiom go. The folder's path is used as it stands to make the folder, but with its
/// percent escapes replaced to write a file: a chosen folder whose name holds such an escape yields two
/// different paths. Both sides have always worked like this and are kept.
namespace OutputFolder {

/// The container's name, without its suffix.
inline constexpr char containerName[] = "Application";

/// `outputPathString` with "/idiom/AppIcon.appiconset" appended, or "/android/icons", as plain text: neither
/// created nor unescaped nor cleaned up.
QString appiconsetPathString(const QString& outputPathString, const QString& idiom);

/// The path of an idiom's PNG file. NotAPath where the unescaped folder is no path, or the name leads out
/// of it.
Result<QString> pngPath(const QString& appiconsetPath, const QString& name);

/// The path of the icon container "Application.icns", in the folder above the mac idiom's. NotAPath
/// where the unescaped folder is none.
Result<QString> containerPath(const QString& appiconsetPath);

/// As `pngPath` and `containerPath`, in a folder whose path is taken as it stands.
Result<QString> pngIn(const QString& folder, const QString& name);
QString containerBeside(const QString& folder);

/// What is told of a PNG file that has no path.
QString shownPngPath(const QString& folder, const QString& name);

} // namespace OutputFolder
