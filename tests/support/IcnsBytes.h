#pragma once

#include "tests/support/BigEndian.h"

#include <QByteArray>

/// Makes icns data without the code under test.
namespace IcnsBytes {

inline QByteArray number(quint32 value) {
    return big(value);
}

inline QByteArray element(const char* type, const QByteArray& data) {
    return QByteArray(type, 4) + number(static_cast<quint32>(8 + data.size())) + data;
}

inline QByteArray icns(const QByteArray& elements) {
    return element("icns", elements);
}

} // namespace IcnsBytes
