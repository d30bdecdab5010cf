#pragma once

#include "base/Result.h"
#include "files/OutputPlace.h"
#include "generation/IconGround.h"
#include "generation/IconRenderer.h"
#include "imaging/png/PngStore.h"

#include <array>
#include <vector>

/// The Mac's icon container: seven renders of one picture in one icns file.
namespace IconContainer {

/// The sides of the renders in points. On a display of scale s a render is s times as many pixels wide.
inline constexpr std::array sides{16, 32, 64, 128, 256, 512, 1024};

/// The same sides as sizes, in points: pixels at scale 1.
std::vector<QSizeF> renders();

/// The size in pixels of the largest picture that the file holds on a display of that scale; empty if the
/// format has no element for any of the sizes.
QSize largestSize(int scale);

struct Written {
    QSize largestSize; ///< the size in pixels of the largest picture in the file
    qint64 bytes = 0;
};

/// Renders `image` in all sizes and writes those that an element exists for to the file at `path`, which is
/// written to `place`. PNG files of its pictures come from `pngs` if there is one.
Result<Written> write(const Image& image, const IconRenderer& renderer, const QString& path,
                      const IconGround& ground = {}, PngStore* pngs = nullptr,
                      OutputPlace& place = OutputPlace::disk());

} // namespace IconContainer
