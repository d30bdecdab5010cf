#pragma once

#include "imaging/formats/Jpeg2000Writer.h"
#include "imaging/png/PngWriter.h"
#include "tests/support/IcnsBytes.h"
#include "tests/support/Pictures.h"

/// Icns data for the tests of this folder.
namespace Families {

/// Packed channels that have no runs.
inline QByteArray packed(const QByteArray& samples) {
    QByteArray bytes;
    for (qsizetype at = 0; at < samples.size(); at += 128) {
        const QByteArray part = samples.mid(at, 128);
        bytes.append(static_cast<char>(part.size() - 1));
        bytes.append(part);
    }
    return bytes;
}

/// A PNG and a JPEG 2000 file, packed ARGB, packed colours with and without leading zeros, plain samples, and
/// two masks: eight elements, six of them with a picture.
inline QByteArray ofEveryKind() {
    using IcnsBytes::element;
    const QImage small = Pictures::translucentNoise(16, 16, 1);
    const QByteArray plane = packed(QByteArray(256, 'a'));
    const QByteArray largePlane = packed(QByteArray(qsizetype{128} * 128, 'a'));
    return IcnsBytes::icns(element("ic07", *encodePng(small)) + element("ic11", *encodeJpeg2000(small)) +
                           element("icp4", "ARGB" + plane + plane + plane + plane) +
                           element("is32", plane + plane + plane) + element("s8mk", QByteArray(256, 'm')) +
                           element("it32", QByteArray(4, '\0') + largePlane + largePlane + largePlane) +
                           element("t8mk", QByteArray(qsizetype{128} * 128, 'm')) +
                           element("ic04", QByteArray(qsizetype{4} * 16 * 16, 'p')));
}

} // namespace Families
