#pragma once

#include <QByteArray>
#include <QtEndian>

/// The bytes of a number, the most significant first.
template <typename T>
QByteArray big(T value) {
    QByteArray bytes(sizeof(T), '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}
