#pragma once

#include <QIcon>

/// The application's own icon, rendered by its own engine at the sizes that desktops ask for.
QIcon applicationIcon();
