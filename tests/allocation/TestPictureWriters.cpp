#include "imaging/formats/BmpWriter.h"
#include "imaging/formats/GifWriter.h"
#include "imaging/formats/Jpeg2000Writer.h"
#include "imaging/formats/JpegWriter.h"
#include "imaging/formats/TiffWriter.h"
#include "imaging/png/PngWriter.h"
#include "tests/allocation/FailingAllocations.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

using FailingAllocations::expectFailuresOf;
using FailingAllocations::hasSucceeded;

namespace {

template <typename Encode>
void expectWholeOrNone(Encode encode,
                       const FailingAllocations::Libraries& leftOut = FailingAllocations::none) {
    const Result<QByteArray> expected = encode();
    ASSERT_TRUE(expected);
    const auto isWhole = [&] {
        const Result<QByteArray> file = encode();
        EXPECT_TRUE(!file || *file == *expected);
        return hasSucceeded(file);
    };
    expectFailuresOf(isWhole, leftOut);
}

} // namespace

TEST(PictureWriterAllocations, png_is_whole_or_none) {
    const QImage small = Pictures::translucentNoise(7, 5, 1);
    expectWholeOrNone([&] { return encodePng(small); });
    const QImage graphic = Pictures::flat(300, 256, Qt::red);
    expectWholeOrNone([&] { return encodePng(graphic); });
}

TEST(PictureWriterAllocations, jpeg_is_whole_or_none) {
    const QImage raster = Pictures::noise(37, 23, 1);
    expectWholeOrNone([&] { return encodeJpeg(raster, 0.7); });
}

TEST(PictureWriterAllocations, gif_is_whole_or_none) {
    const QImage few = Pictures::flat(7, 5, Qt::red);
    const QImage many = Pictures::translucentNoise(31, 23, 1);
    expectWholeOrNone([&] { return encodeGif(few); });
    expectWholeOrNone([&] { return encodeGif(many); });
}

TEST(PictureWriterAllocations, tiff_is_whole_or_none) {
    // When libtiff closes a file, it reads memory that it did not get.
    const FailingAllocations::Libraries leftOut{"libtiff"};
    // The picture has several strips.
    const QImage raster = Pictures::translucentNoise(200, 100, 1);
    expectWholeOrNone([&] { return encodeTiff(raster, TiffCompression::Lzw); }, leftOut);
    expectWholeOrNone([&] { return encodeTiff(raster, TiffCompression::None); }, leftOut);
}

TEST(PictureWriterAllocations, jpeg_2000_is_whole_or_none) {
    const QImage raster = Pictures::translucentNoise(7, 5, 1);
    expectWholeOrNone([&] { return encodeJpeg2000(raster); }, {"libopenjp2"});
    // Of the library's own allocations only the first fails, the one for the picture.
    expectFailuresOf([&] { return hasSucceeded(encodeJpeg2000(raster)); }, {"libQt6"}, 1 << 30);
}

TEST(PictureWriterAllocations, bmp_is_whole_or_none) {
    const QImage raster = Pictures::translucentNoise(7, 5, 1);
    expectWholeOrNone([&] { return encodeBmp(raster); });
}
