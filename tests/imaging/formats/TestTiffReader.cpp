#include "imaging/io/ImageSource.h"
#include "tests/support/Fixtures.h"
#include "tests/support/Pictures.h"
#include "tests/support/Refusals.h"

#include <QFile>
#include <QtEndian>

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

using Fixtures::alpha;
using Fixtures::color;
using Fixtures::expectPicture;
using Fixtures::grey;
using Fixtures::greyLevel;
using Fixtures::height;
using Fixtures::paletteIndex;
using Fixtures::translucent;
using Fixtures::width;
using Pictures::Pixel;
using Pictures::pixel;
using Refusals::expectAtOnce;
using Refusals::expectError;
using Refusals::expectNeedsEveryByte;

namespace {

void expectRow(const char* name, const std::vector<Pixel>& expected, int tolerance) {
    SCOPED_TRACE(name);
    const Result<DecodedPicture> picture = ImageSource::decode(fixture(name));
    ASSERT_TRUE(picture) << picture.error().sentence.toStdString();
    EXPECT_TRUE(picture->warnings.isEmpty());
    ASSERT_EQ(picture->raster.size(), QSize(static_cast<int>(expected.size()), 1));
    for (int x = 0; x < picture->raster.width(); ++x) {
        const Pixel& wanted = expected[static_cast<std::size_t>(x)];
        const Pixel found = pixel(picture->raster, x, 0);
        EXPECT_LE(std::abs(found.red - wanted.red), tolerance) << x;
        EXPECT_LE(std::abs(found.green - wanted.green), tolerance) << x;
        EXPECT_LE(std::abs(found.blue - wanted.blue), tolerance) << x;
        EXPECT_EQ(found.alpha, 255);
    }
}

/// `tiff`, a little-endian file, with `value` as the value of a tag.
QByteArray withTag(QByteArray tiff, quint16 tag, quint32 value) {
    const auto directory = qFromLittleEndian<quint32>(tiff.constData() + 4);
    const auto count = qFromLittleEndian<quint16>(tiff.constData() + directory);
    for (quint32 i = 0; i < count; ++i) {
        char* entry = tiff.data() + directory + 2 + 12 * i;
        if (qFromLittleEndian<quint16>(entry) == tag) {
            qToLittleEndian<quint16>(4, entry + 2); // a long
            qToLittleEndian(value, entry + 8);
        }
    }
    return tiff;
}

constexpr quint16 widthTag = 256;
constexpr quint16 heightTag = 257;
constexpr quint16 stripPlaceTag = 273;
constexpr quint16 rowsPerStripTag = 278;
constexpr quint16 stripLengthTag = 279;

} // namespace

TEST(ImageSourceTiff, grey_is_read_exactly) {
    expectPicture("grey-8.tif", grey);
    expectPicture("grey-8-white-is-zero.tif", grey);
    expectPicture("grey-1.tif", [](int x, int y) {
        const int level = 255 * paletteIndex(x, y, 2);
        return QColor(level, level, level);
    });
}

TEST(ImageSourceTiff, sixteen_bits_of_either_byte_order_are_rounded_to_the_nearest_byte) {
    expectPicture("grey-16.tif", grey);
    expectPicture("grey-16-big-endian.tif", grey);
}

TEST(ImageSourceTiff, colours_are_read_exactly_in_either_byte_order) {
    expectPicture("rgb.tif", color);
    expectPicture("rgb-big-endian.tif", color);
}

TEST(ImageSourceTiff, compressed_colours_are_read_exactly) {
    expectPicture("rgb-lzw.tif", color);
    expectPicture("rgb-deflate.tif", color);
}

TEST(ImageSourceTiff, straight_alpha_is_multiplied_and_associated_alpha_is_not) {
    expectPicture("rgba-unassociated.tif", translucent);
    expectPicture("rgba-associated.tif", translucent);
    expectPicture("grey-alpha-unassociated.tif", [](int x, int y) {
        return QColor(greyLevel(x, y), greyLevel(x, y), greyLevel(x, y), alpha(x, y));
    });
}

TEST(ImageSourceTiff, a_palette_is_read_exactly) {
    expectPicture("palette-8.tif", [](int x, int y) {
        const int i = paletteIndex(x, y, 256);
        return QColor((47 * i + 20) % 256, (91 * i + 60) % 256, (13 * i + 130) % 256);
    });
}

TEST(ImageSourceTiff, tiles_are_read_exactly) {
    expectPicture("rgb-tiled.tif", color, 20, 18);
}

TEST(ImageSourceTiff, separate_planes_are_read_exactly) {
    expectPicture("rgb-planes.tif", color);
}

TEST(ImageSourceTiff, ink_without_a_profile_is_multiplied_onto_white) {
    expectRow("cmyk.tif",
              {{255, 255, 255, 255},
               {0, 255, 255, 255},
               {255, 0, 255, 255},
               {255, 255, 0, 255},
               {0, 0, 0, 255},
               {163, 122, 82, 255}},
              0);
}

TEST(ImageSourceTiff, ink_with_a_profile_goes_through_it) {
    expectRow("cmyk-icc.tif",
              {{255, 255, 255, 255},
               {162, 162, 162, 255},
               {162, 162, 162, 255},
               {162, 162, 162, 255},
               {0, 0, 0, 255},
               {98, 98, 98, 255}},
              2);
}

TEST(ImageSourceTiff, display_p3_colours_are_converted_to_srgb) {
    expectRow("display-p3.tif",
              {{255, 255, 255, 255}, {128, 128, 128, 255}, {209, 147, 91, 255}, {83, 152, 118, 255}}, 1);
}

TEST(ImageSourceTiff, pictures_are_turned_upright) {
    expectPicture("orientation-6.tif", color);
}

TEST(ImageSourceTiff, a_file_cut_off_at_any_byte_is_an_error) {
    // Each file ends with its directory, or with data that belong to the directory.
    for (const char* name :
         {"rgb.tif", "rgba-unassociated.tif", "rgb-tiled.tif", "rgb-planes.tif", "rgb-big-endian.tif"}) {
        SCOPED_TRACE(name);
        expectNeedsEveryByte(fixture(name));
    }
}

TEST(ImageSourceTiff, pixels_that_are_cut_off_are_an_error) {
    // The pixels are moved behind the directory, to the end of the file.
    for (const char* name : {"rgba-unassociated.tif", "grey-8.tif", "palette-8.tif", "rgb-deflate.tif"}) {
        SCOPED_TRACE(name);
        QByteArray tiff = fixture(name);
        const auto directory = qFromLittleEndian<quint32>(tiff.constData() + 4);
        const QByteArray pixels = tiff.mid(8, directory - 8);
        tiff = withTag(tiff, stripPlaceTag, static_cast<quint32>(tiff.size())) + pixels;
        ASSERT_TRUE(ImageSource::decode(tiff));
        for (const qsizetype missing : {2, 20, 60})
            EXPECT_FALSE(ImageSource::decode(tiff.chopped(missing))) << missing << " bytes";
        EXPECT_FALSE(ImageSource::decode(tiff.chopped(pixels.size())));
    }
}

TEST(ImageSourceTiff, pixels_outside_of_the_file_are_an_error) {
    for (const char* name : {"rgba-unassociated.tif", "grey-8.tif", "palette-8.tif", "rgb-deflate.tif"}) {
        SCOPED_TRACE(name);
        const QByteArray tiff = fixture(name);
        for (const quint32 place : {static_cast<quint32>(tiff.size()) - 3, 0x7fffffffU, 0xfffffff0U})
            EXPECT_FALSE(ImageSource::decode(withTag(tiff, stripPlaceTag, place))) << place;
    }
}

TEST(ImageSourceTiff, a_compressed_strip_that_is_shorter_than_its_pixels_is_an_error) {
    const QByteArray tiff = fixture("rgb-deflate.tif");
    EXPECT_FALSE(ImageSource::decode(withTag(tiff, stripLengthTag, 100)));
}

TEST(ImageSourceTiff, a_damaged_compressed_strip_is_an_error) {
    QByteArray tiff = fixture("rgb-deflate.tif");
    tiff[8] = 0;
    EXPECT_FALSE(ImageSource::decode(tiff));
}

TEST(ImageSourceTiff, a_header_alone_is_an_error) {
    for (const QByteArray& bytes :
         {QByteArray("II\x2a\0", 4), QByteArray("II\x2a\0\x08\0\0\0", 8), QByteArray("MM\0\x2a\0\0\0\x08", 8),
          QByteArray("II\x2a\0\0\0\0\0", 8), QByteArray("II\x2a\0\x08\0\0\0\0\0\0\0\0\0", 14),
          QByteArray("II\x2b\0\x08\0\0\0\x10\0\0\0\0\0\0\0", 16)}) {
        const Result<DecodedPicture> picture = ImageSource::decode(bytes);
        ASSERT_FALSE(picture) << bytes.toHex().constData();
        EXPECT_EQ(picture.error().code, ErrorCode::Damaged) << bytes.toHex().constData();
    }
}

TEST(ImageSourceTiff, a_directory_that_follows_itself_is_read_once) {
    QByteArray tiff = fixture("rgb.tif");
    const auto directory = qFromLittleEndian<quint32>(tiff.constData() + 4);
    const auto count = qFromLittleEndian<quint16>(tiff.constData() + directory);
    qToLittleEndian(directory, tiff.data() + directory + 2 + 12 * count);
    const Result<DecodedPicture> picture = ImageSource::decode(tiff);
    ASSERT_TRUE(picture);
    EXPECT_TRUE(Pictures::same(picture->raster, Pictures::raster(width, height, color)));
}

TEST(ImageSourceTiff, a_size_beyond_the_limit_is_refused_at_once) {
    expectAtOnce([] {
        const QByteArray tiff = fixture("rgba-unassociated.tif");
        for (const quint32 side : {16385U, 65535U}) {
            SCOPED_TRACE(side);
            expectError(withTag(withTag(tiff, widthTag, side), heightTag, side), ErrorCode::TooLarge);
        }
        // libtiff may refuse to open a picture with more bytes than there can be.
        for (const quint32 side : {0x7fffffffU, 0xffffffffU})
            EXPECT_FALSE(ImageSource::decode(withTag(withTag(tiff, widthTag, side), heightTag, side)))
                << side;
    });
}

TEST(ImageSourceTiff, a_size_without_pixels_is_refused) {
    const QByteArray tiff = fixture("rgba-unassociated.tif");
    EXPECT_FALSE(ImageSource::decode(withTag(tiff, widthTag, 0)));
    EXPECT_FALSE(ImageSource::decode(withTag(tiff, heightTag, 0)));
}

TEST(ImageSourceTiff, strips_of_no_rows_are_refused) {
    EXPECT_FALSE(ImageSource::decode(withTag(fixture("rgba-unassociated.tif"), rowsPerStripTag, 0)));
}
