#include "imaging/formats/JpegWriter.h"
#include "imaging/io/ImageSource.h"
#include "tests/support/Fixtures.h"
#include "tests/support/Pictures.h"
#include "tests/support/Refusals.h"

#include <QFile>
#include <QtEndian>

#include <gtest/gtest.h>

#include <random>

using Pictures::Pixel;
using Pictures::pixel;
using Refusals::expectAtOnce;
using Refusals::expectError;
using Refusals::expectNeedsEveryByte;

namespace {

// The fixtures show blocks of one colour each. The format keeps these colours except for rounding.

constexpr int blockSide = 8;

const std::vector<Pixel> blocks = {{200, 40, 40, 255},  {40, 180, 60, 255},   {50, 60, 220, 255},
                                   {230, 220, 60, 255}, {128, 128, 128, 255}, {20, 20, 20, 255}};
const std::vector<Pixel> greys = {{0, 0, 0, 255},       {51, 51, 51, 255},    {102, 102, 102, 255},
                                  {153, 153, 153, 255}, {204, 204, 204, 255}, {255, 255, 255, 255}};

/// Expects that the raster shows these blocks, `columns` in a row. Each block is compared at its middle and
/// near its corner, `inset` pixels from its sides, to within `tolerance`.
void expectBlocks(const QImage& raster, const std::vector<Pixel>& expected, int columns, int side,
                  int tolerance, int inset = 0) {
    const int rows = static_cast<int>(expected.size()) / columns;
    ASSERT_EQ(raster.size(), QSize(columns * side, rows * side));
    for (int i = 0; i < columns * rows; ++i) {
        SCOPED_TRACE(i);
        const Pixel& wanted = expected[static_cast<std::size_t>(i)];
        for (const int offset : {inset, side / 2}) {
            const Pixel found = pixel(raster, i % columns * side + offset, i / columns * side + offset);
            EXPECT_NEAR(found.red, wanted.red, tolerance);
            EXPECT_NEAR(found.green, wanted.green, tolerance);
            EXPECT_NEAR(found.blue, wanted.blue, tolerance);
            EXPECT_EQ(found.alpha, wanted.alpha);
        }
    }
}

void expectFile(const char* name, const std::vector<Pixel>& expected, int columns, int side = blockSide,
                int tolerance = 2, int inset = 0) {
    SCOPED_TRACE(name);
    const Result<LoadedPicture> picture = ImageSource::load(fixture(name));
    ASSERT_TRUE(picture) << picture.error().sentence.toStdString();
    EXPECT_TRUE(picture->warnings.isEmpty());
    expectBlocks(picture->image.largestRaster().valueOr({}), expected, columns, side, tolerance, inset);
}

/// Where the segment with `marker` begins: its 0xff byte.
qsizetype segment(const QByteArray& jpeg, uchar marker) {
    return jpeg.indexOf(QByteArray("\xff").append(static_cast<char>(marker)));
}

constexpr uchar baselineFrame = 0xc0;
constexpr uchar scan = 0xda;

} // namespace

TEST(ImageSourceJpeg, colours_are_read_to_within_the_formats_rounding) {
    expectFile("rgb.jpg", blocks, 3);
}

TEST(ImageSourceJpeg, colours_of_half_the_resolution_are_read) {
    // Colours blend where blocks meet.
    expectFile("subsampled.jpg", blocks, 3, 16, 4, 2);
}

TEST(ImageSourceJpeg, a_progressive_picture_is_read) {
    expectFile("progressive.jpg", blocks, 3);
}

TEST(ImageSourceJpeg, grey_is_read) {
    expectFile("grey.jpg", greys, 6, blockSide, 1);
}

TEST(ImageSourceJpeg, a_grey_profile_converts_grey) {
    expectFile("grey-icc.jpg",
               {{0, 0, 0, 255},
                {124, 124, 124, 255},
                {170, 170, 170, 255},
                {203, 203, 203, 255},
                {231, 231, 231, 255},
                {255, 255, 255, 255}},
               6, blockSide, 2);
}

TEST(ImageSourceJpeg, ink_without_a_profile_is_multiplied_onto_white) {
    const std::vector<Pixel> expected = {{255, 255, 255, 255}, {0, 255, 255, 255}, {255, 0, 255, 255},
                                         {255, 255, 0, 255},   {0, 0, 0, 255},     {63, 63, 63, 255}};
    expectFile("cmyk-adobe.jpg", expected, 6);
    expectFile("cmyk-plain.jpg", expected, 6);
}

TEST(ImageSourceJpeg, ink_with_a_profile_goes_through_it) {
    expectFile("cmyk-adobe-icc.jpg",
               {{255, 255, 255, 255},
                {162, 162, 162, 255},
                {162, 162, 162, 255},
                {162, 162, 162, 255},
                {0, 0, 0, 255},
                {98, 98, 98, 255}},
               6, blockSide, 3);
}

TEST(ImageSourceJpeg, display_p3_colours_are_converted_to_srgb) {
    expectFile("display-p3.jpg",
               {{255, 255, 255, 255}, {128, 128, 128, 255}, {209, 147, 91, 255}, {83, 152, 118, 255}}, 4,
               blockSide, 3);
}

TEST(ImageSourceJpeg, all_eight_orientations_are_turned_upright) {
    for (const char* name :
         {"orientation-1.jpg", "orientation-2.jpg", "orientation-3.jpg", "orientation-4.jpg",
          "orientation-5.jpg", "orientation-6.jpg", "orientation-7.jpg", "orientation-8.jpg"})
        expectFile(name, blocks, 3);
}

TEST(ImageSourceJpeg, an_orientation_that_does_not_exist_is_upright) {
    for (const char orientation : {'\0', '\x09', '\xff'}) {
        QByteArray jpeg = fixture("orientation-3.jpg");
        const qsizetype entry = jpeg.indexOf(QByteArray("\x12\x01\x03\0", 4));
        ASSERT_GT(entry, 0);
        jpeg[entry + 8] = orientation;
        const Result<DecodedPicture> picture = ImageSource::decode(jpeg);
        ASSERT_TRUE(picture);
        expectBlocks(picture->raster, {blocks[5], blocks[4], blocks[3], blocks[2], blocks[1], blocks[0]}, 3,
                     blockSide, 2);
    }
}

TEST(ImageSourceJpeg, an_exif_block_that_breaks_off_is_upright) {
    for (const quint32 directory : {0x40U, 0xfffffff0U}) {
        QByteArray jpeg = fixture("orientation-3.jpg");
        const qsizetype tiff = jpeg.indexOf(QByteArray("II\x2a\0", 4));
        ASSERT_GT(tiff, 0);
        qToLittleEndian(directory, jpeg.data() + tiff + 4);
        const Result<DecodedPicture> picture = ImageSource::decode(jpeg);
        ASSERT_TRUE(picture);
        EXPECT_NEAR(pixel(picture->raster, 4, 4).red, blocks[5].red, 2);
    }
}

TEST(ImageSourceJpeg, a_broken_profile_is_warned_of_and_the_colours_are_srgb) {
    const Result<DecodedPicture> picture = ImageSource::decode(fixture("broken-icc.jpg"));
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->warnings, QStringList{PictureReader::profileWarning()});
    expectBlocks(picture->raster, blocks, 3, blockSide, 2);
}

TEST(ImageSourceJpeg, a_profile_with_a_piece_missing_is_warned_of) {
    QByteArray jpeg = fixture("display-p3.jpg");
    const qsizetype piece = jpeg.indexOf(QByteArray("ICC_PROFILE\0\1\1", 14));
    ASSERT_GT(piece, 0);
    jpeg[piece + 13] = 2; // the first of two
    const Result<DecodedPicture> picture = ImageSource::decode(jpeg);
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->warnings, QStringList{PictureReader::profileWarning()});
    EXPECT_NEAR(pixel(picture->raster, 20, 4).red, 200, 3) << "as sRGB";
}

TEST(ImageSourceJpeg, a_profile_for_other_colours_is_warned_of) {
    // A profile for inks in a picture without inks.
    const QByteArray ink = fixture("cmyk-adobe-icc.jpg");
    const qsizetype from = segment(ink, 0xe2);
    ASSERT_GT(from, 0);
    const qsizetype length = 2 + qFromBigEndian<quint16>(ink.constData() + from + 2);
    QByteArray jpeg = fixture("rgb.jpg");
    jpeg.insert(2, ink.mid(from, length));
    const Result<DecodedPicture> picture = ImageSource::decode(jpeg);
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->warnings, QStringList{PictureReader::profileWarning()});
    expectBlocks(picture->raster, blocks, 3, blockSide, 2);
}

TEST(ImageSourceJpeg, a_file_cut_off_at_any_byte_is_an_error) {
    for (const char* name :
         {"rgb.jpg", "progressive.jpg", "grey.jpg", "cmyk-adobe.jpg", "orientation-6.jpg"}) {
        SCOPED_TRACE(name);
        expectNeedsEveryByte(fixture(name));
    }
}

TEST(ImageSourceJpeg, more_memory_than_the_library_may_take_is_told_as_such) {
    const QByteArray earlier = qgetenv("JPEGMEM");
    qputenv("JPEGMEM", "1k");
    const Result<DecodedPicture> picture = ImageSource::decode(fixture("large-progressive.jpg"));
    const Result<QByteArray> file = encodeJpeg(Pictures::noise(400, 300, 1), 0.7);
    earlier.isNull() ? qunsetenv("JPEGMEM") : qputenv("JPEGMEM", earlier);
    ASSERT_FALSE(picture);
    EXPECT_EQ(picture.error().code, ErrorCode::OutOfMemory) << picture.error().sentence.toStdString();
    ASSERT_FALSE(file);
    EXPECT_EQ(file.error().code, ErrorCode::OutOfMemory) << file.error().sentence.toStdString();
}

TEST(ImageSourceJpeg, garbage_in_the_pixels_is_an_error_or_a_picture_of_the_same_size) {
    std::mt19937 random(7);
    for (const char* name : {"rgb.jpg", "progressive.jpg", "subsampled.jpg", "cmyk-adobe.jpg"}) {
        SCOPED_TRACE(name);
        const QByteArray whole = fixture(name);
        const QSize size = ImageSource::decode(whole)->raster.size();
        const qsizetype start = segment(whole, scan) + 14;
        for (int round = 0; round < 300; ++round) {
            QByteArray jpeg = whole;
            for (int i = 0; i < 4; ++i) {
                const auto at =
                    start + static_cast<qsizetype>(random() % static_cast<quint32>(whole.size() - start));
                jpeg[at] = static_cast<char>(random() & 0xff);
            }
            const Result<DecodedPicture> picture = ImageSource::decode(jpeg);
            if (picture)
                EXPECT_EQ(picture->raster.size(), size);
            else
                EXPECT_FALSE(picture.error().sentence.isEmpty());
        }
    }
}

TEST(ImageSourceJpeg, a_header_beyond_the_limit_is_refused_at_once) {
    QByteArray jpeg = fixture("rgb.jpg");
    const qsizetype frame = segment(jpeg, baselineFrame);
    ASSERT_GT(frame, 0);
    qToBigEndian<quint16>(65500, jpeg.data() + frame + 5);
    qToBigEndian<quint16>(65500, jpeg.data() + frame + 7);
    expectAtOnce([&] { expectError(jpeg, ErrorCode::TooLarge); });
}

TEST(ImageSourceJpeg, a_header_without_pixels_is_refused) {
    QByteArray jpeg = fixture("rgb.jpg");
    const qsizetype frame = segment(jpeg, baselineFrame);
    ASSERT_GT(frame, 0);
    qToBigEndian<quint16>(0, jpeg.data() + frame + 7);
    const Result<DecodedPicture> picture = ImageSource::decode(jpeg);
    ASSERT_FALSE(picture);
    EXPECT_EQ(picture.error().code, ErrorCode::Damaged);
}

TEST(ImageSourceJpeg, the_largest_size_that_a_header_can_say_is_refused_for_its_size) {
    const QByteArray header("\xff\xd8\xff\xc0\x00\x0b\x08\xff\xff\xff\xff\x01\x01\x11\x00"
                            "\xff\xda\x00\x08\x01\x01\x00\x00\x3f\x00\x00\xff\xd9",
                            28);
    const Result<DecodedPicture> picture = ImageSource::decode(header);
    ASSERT_FALSE(picture);
    EXPECT_EQ(picture.error().code, ErrorCode::TooLarge) << picture.error().sentence.toStdString();
    EXPECT_TRUE(picture.error().sentence.contains(QStringLiteral("65535")))
        << picture.error().sentence.toStdString();
}
