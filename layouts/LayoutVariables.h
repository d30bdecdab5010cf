#pragma once

#include "base/Result.h"
#include "layouts/Layout.h"

/// `layout` with the values of its variables in all paths and notes, for the project in the folder `out`; if
/// that is empty, there is no project. `{name}` is `name`. A variable whose file or folder is not there has
/// its default. Malformed where a path has another variable, where a value leads out of the folder, or where
/// two files get one path.
Result<Layout> withVariables(Layout layout, const QString& out, const QString& name);
