#include "imaging/pixels/Premultiplication.h"
#include "imaging/pixels/Resampler.h"
#include "imaging/png/PngWriter.h"
#include "tests/support/EachVectorTarget.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace {

/// The results of the vector code for pictures whose rows do not fill a whole number of vectors.
std::vector<QByteArray> results() {
    std::vector<QByteArray> all;
    const auto add = [&](const QImage& raster) {
        all.emplace_back(reinterpret_cast<const char*>(raster.constBits()), raster.sizeInBytes());
    };
    constexpr std::array<std::array<int, 4>, 10> sizes{{{1, 1, 5, 3},
                                                        {3, 2, 3, 1},
                                                        {64, 64, 32, 32},
                                                        {97, 61, 13, 29},
                                                        {203, 131, 102, 66},
                                                        {61, 97, 122, 150},
                                                        {255, 33, 128, 17},
                                                        {100, 7, 33, 7},
                                                        {7, 100, 7, 50},
                                                        {1023, 5, 511, 3}}};
    for (const auto& [width, height, targetWidth, targetHeight] : sizes) {
        const QImage picture = Pictures::translucentNoise(width, height, 5);
        add(*stretched(picture, QSize(targetWidth, targetHeight)));
        const QImage straight = *straightRaster(picture);
        add(straight);
        QByteArray pixels(picture.sizeInBytes(), 0);
        auto* out = reinterpret_cast<std::uint8_t*>(pixels.data());
        const auto count = static_cast<std::size_t>(pixels.size() / 4);
        premultiply(straight.constBits(), out, count);
        all.push_back(pixels);
        clampToAlpha(straight.constBits(), out, count);
        all.push_back(pixels);
        unpremultiplyArgb(picture.constBits(), out, count);
        all.push_back(pixels);
        all.push_back(*encodePng(picture, {{{PngFilterStrategy::Adaptive, Deflate::Method::Runs}}}));
        all.push_back(*encodePng(picture));
        // A picture with runs: noise has no runs.
        const QImage flat = *stretched(*stretched(picture, QSize(3, 3)), QSize(width, 2 * height));
        all.push_back(*encodePng(flat, {{{PngFilterStrategy::Adaptive, Deflate::Method::Runs}}}));
        all.emplace_back(1, isClampedToAlpha(straight.constBits(), count) ? 'y' : 'n');
        all.emplace_back(1, isClampedToAlpha(picture.constBits(), count) ? 'y' : 'n');
    }
    return all;
}

} // namespace

TEST(VectorTargets, every_instruction_set_gives_the_same_bytes) {
    const std::vector<QByteArray> expected = results();
    const int count = forEachVectorTarget([&] { EXPECT_TRUE(results() == expected); });
    EXPECT_GE(count, 1);
    RecordProperty("instruction sets", count);
}

TEST(VectorTargets, a_feature_that_is_not_known_is_missing) {
    EXPECT_TRUE(VectorDispatch::hasFeatures(""));
    EXPECT_FALSE(VectorDispatch::hasFeatures("avx4096"));
#if HWY_ARCH_X86_64
    EXPECT_TRUE(VectorDispatch::hasFeatures("sse2"));
    EXPECT_FALSE(VectorDispatch::hasFeatures("sse2,avx4096"));
    EXPECT_FALSE(VectorDispatch::hasFeatures("avx4096,sse2"));
#endif
}

// Where this fails with a newer Highway, it uses features that VectorDispatch does not know. Add them there.
TEST(VectorTargets, the_instruction_sets_are_those_that_Highways_own_library_finds) {
    const std::int64_t found = VectorDispatch::supported() & HWY_TARGETS;
    const std::int64_t expected = (hwy::SupportedTargets() | HWY_STATIC_TARGET) & HWY_TARGETS;
    EXPECT_EQ(found & ~expected, 0);
#if HWY_ARCH_X86
    EXPECT_EQ(found, expected);
#endif
}
