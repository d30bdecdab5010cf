#pragma once

#include <QByteArrayView>
#include <QSize>

#include <optional>

/// Facts about a JPEG 2000 file that are known without decoding it. Source: ISO/IEC 15444-1, annexes A and I.
namespace Jpeg2000Codestream {

/// The first bytes of a codestream.
inline constexpr QByteArrayView start("\xFF\x4F\xFF\x51");

/// The codestream that is shown: the first one in a JP2 file, or `file` itself where it is a bare codestream.
/// No value where there is no codestream.
std::optional<QByteArrayView> find(QByteArrayView file);

struct Size {
    QSize pixels;
    quint64 tiles = 0;
};

/// The size from a codestream's size marker. It does not count the area left of and above the picture's
/// origin. No value where the marker's numbers are impossible.
std::optional<Size> size(QByteArrayView codestream);

/// Whether the length of the size marker agrees with its number of components.
bool isWellFormed(QByteArrayView codestream);

/// Whether every tile has at least one part in the codestream.
bool hasAllTiles(QByteArrayView codestream);

} // namespace Jpeg2000Codestream
