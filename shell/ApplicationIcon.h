#pragma once

#include <QIcon>

/// The application's icon, rendered by the program's own engine at 16, 32, 48, 64 and 128 pixels. Null where
/// the resource can't be read.
QIcon applicationIcon();
