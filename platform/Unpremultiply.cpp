#include "platform/Unpremultiply.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

/// Division by each alpha as a multiplication: n ÷ a = (n × reciprocal) >> 32, exact for every n that occurs
/// here, since n × a < 2³² (n is at most 255 × 255 + 127).
constexpr std::array<std::uint64_t, 256> reciprocals = [] {
    std::array<std::uint64_t, 256> table{};
    for (std::uint64_t a = 1; a < 256; ++a)
        table[a] = (std::uint64_t{1} << 32) / a + 1;
    return table;
}();

std::uint8_t divided(std::uint32_t c, std::uint32_t a) {
    const std::uint64_t quotient = ((c * 255 + a / 2) * reciprocals[a]) >> 32;
    return static_cast<std::uint8_t>(std::min<std::uint64_t>(quotient, 255));
}

} // namespace

void unpremultiply(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels) {
    for (std::size_t i = 0; i < 4 * pixels; i += 4) {
        const std::uint32_t a = in[i + 3];
        if (a == 255) {
            std::memmove(out + i, in + i, 4);
            continue;
        }
        out[i] = divided(in[i], a);
        out[i + 1] = divided(in[i + 1], a);
        out[i + 2] = divided(in[i + 2], a);
        out[i + 3] = static_cast<std::uint8_t>(a);
    }
}

QImage straightRaster(const QImage& raster) {
    if (raster.format() == QImage::Format_RGBA8888)
        return raster;
    QImage straight(raster.size(), QImage::Format_RGBA8888);
    if (straight.isNull())
        return straight;
    for (int y = 0; y < raster.height(); ++y)
        unpremultiply(raster.constScanLine(y), straight.scanLine(y),
                      static_cast<std::size_t>(raster.width()));
    return straight;
}
