#pragma once

#include "base/Result.h"
#include "generation/IconRenderer.h"
#include "imaging/png/PngStore.h"

#include <array>
#include <vector>

/// The Mac's icon container: seven renders of one picture in one icns file.
namespace IconContainer {

/// The sides of the renders in points: on a display of scale s they are s times as many pixels wide.
inline constexpr std::array sides{16, 32, 64, 128, 256, 512, 1024};

/// The same as sizes, which are pixels at scale 1.
std::vector<QSizeF> renders();

/// The size in pixels of the largest picture that the file keeps on a display of that scale; empty where it
/// has no element for any of them.
QSize largestSize(int scale);

struct Written {
    QSize largestSize; ///< of the pictures that the file holds, in pixels
    qint64 bytes = 0;
};

/// Renders `image` in these sizes and writes what the container has elements for to the file at `path`,
/// whole or not at all. PNG files of its pictures come from `pngs` if there is one.
Result<Written> write(const Image& image, const IconRenderer& renderer, const QString& path,
                      PngStore* pngs = nullptr);

} // namespace IconContainer
