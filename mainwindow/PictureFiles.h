#pragma once

#include <QStringList>

/// What a panel that asks for a picture offers: files of the formats that are read, and all files.
QStringList pictureFilters();
