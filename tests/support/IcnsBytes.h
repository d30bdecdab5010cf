#pragma once

#include <QByteArray>
#include <QtEndian>

/// Icns data, put together by hand.
namespace IcnsBytes {

inline QByteArray number(quint32 value) {
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

inline QByteArray element(const char* type, const QByteArray& data) {
    return QByteArray(type, 4) + number(static_cast<quint32>(8 + data.size())) + data;
}

inline QByteArray icns(const QByteArray& elements) {
    return element("icns", elements);
}

} // namespace IcnsBytes
