#pragma once

#include <QByteArrayView>
#include <QSize>

#include <optional>

/// What a JPEG 2000 file tells before it is decoded. Source: ISO/IEC 15444-1, annexes A and I.
namespace Jpeg2000Codestream {

/// What a bare codestream begins with.
inline constexpr QByteArrayView start("\xFF\x4F\xFF\x51");

/// The first codestream of a JP2 file, or the bare one that `file` is: that is what is shown.
std::optional<QByteArrayView> find(QByteArrayView file);

struct Size {
    QSize pixels;
    quint64 tiles = 0;
};

/// What a codestream's size marker tells; what stands left of and above the picture's origin is no part of
/// it. No value where it can't be.
std::optional<Size> size(QByteArrayView codestream);

/// Whether the length of the size marker agrees with its number of components.
bool isWellFormed(QByteArrayView codestream);

/// Whether a part of every tile is there.
bool hasAllTiles(QByteArrayView codestream);

} // namespace Jpeg2000Codestream
