#pragma once

#include <QByteArray>

/// The bytes of a file in tests/data/pictures; empty where there is none of that name.
QByteArray fixture(const char* name);
