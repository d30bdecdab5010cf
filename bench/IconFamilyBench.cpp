// Measures conversions of whole buffers of 1024 × 1024 pixels, beside memcpy and a plain loop, and the making
// of a family.
#include "base/Log.h"
#include "bench/Median.h"
#include "iconfamily/IconFamily.h"
#include "iconfamily/PixelBuffers.h"
#include "imaging/io/ImageSource.h"
#include "imaging/pixels/Premultiplication.h"

#include <QFile>
#include <QGuiApplication>

#include <cstring>

namespace {

constexpr std::size_t pixels = 1024 * 1024;

std::vector<std::uint8_t> noise(std::size_t count) {
    std::vector<std::uint8_t> bytes(count);
    std::uint32_t state = 1;
    for (std::uint8_t& byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<std::uint8_t>(state >> 24U);
    }
    return bytes;
}

/// Does the same without vector instructions.
void unpremultiplyPlainly(std::uint8_t* bytes, std::size_t count) {
    for (std::uint8_t* pixel = bytes; pixel != bytes + 4 * count; pixel += 4) {
        const unsigned a = pixel[0];
        for (int c = 1; c < 4; ++c)
            pixel[c] = a == 0 ? std::uint8_t{0}
                              : static_cast<std::uint8_t>(std::min(255U, (pixel[c] * 255U + a / 2) / a));
    }
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QLoggingCategory::setFilterRules(QStringLiteral("tobrimax=false"));
    const QGuiApplication application(argc, argv);
    const std::vector<std::uint8_t> in = noise(4 * pixels);
    std::vector<std::uint8_t> out(4 * pixels);
    const double copied = report("memcpy, 4 MiB", [&] { std::memcpy(out.data(), in.data(), out.size()); });
    const double reversed = report("permute (3, 2, 1, 0)", [&] {
        PixelBuffers::permute(in.data(), out.data(), pixels, {3, 2, 1, 0});
    });
    const double turned = report("permute (0, 3, 2, 1)", [&] {
        PixelBuffers::permute(in.data(), out.data(), pixels, {0, 3, 2, 1});
    });
    report("expand R, G, B to 255, R, G, B", [&] { PixelBuffers::expandRgb(in.data(), out.data(), pixels); });
    // The noise has every alpha, since opaque pixels are skipped. The plain loop works in place: each run
    // starts from the result of the run before, which takes the same time.
    const double divided = report("unpremultiply", [&] { unpremultiplyArgb(in.data(), out.data(), pixels); });
    out = in;
    const double plainly =
        report("unpremultiply, plain loop", [&] { unpremultiplyPlainly(out.data(), pixels); });
    std::printf("permute at %.2f and %.2f of memcpy's speed; unpremultiply at %.1f times the plain loop's\n",
                copied / reversed, copied / turned, plainly / divided);

    QFile file(QStringLiteral(SAMPLE_PICTURE));
    if (!file.open(QIODevice::ReadOnly))
        return 1;
    const Result<LoadedPicture> picture = ImageSource::load(file.readAll());
    if (!picture)
        return 1;
    std::unique_ptr<IconFamily> family;
    report("a family of thumbnails",
           [&] { family = IconFamily::iconFamilyWithThumbnailsOfImage(picture->image); });
    report("its image with all representations", [&] { static_cast<void>(family->imageWithAllReps()); });
    return 0;
}
