#pragma once

#include "base/Result.h"
#include "layouts/Layout.h"

/// The layouts that there are.
namespace LayoutCatalogue {

/// The names of the built-in layouts, in alphabetical order.
QStringList names();

/// The built-in layout of that name, or the layout in the file at that path if `nameOrPath` has a slash or
/// ends with
/// ".toml". The files of the layouts that it uses come first, then its own. NotFound where there is no such
/// layout, with the nearest name; Malformed with the file, the key and the nearest word where the layout
/// can't be used: a wrong key or type, a size of no pixels or too many, a path out of the folder, two files
/// of one path, a layout that uses itself, a template that names a file that is not there; else as
/// RegularFile::read.
Result<Layout> load(const QString& nameOrPath);

} // namespace LayoutCatalogue
