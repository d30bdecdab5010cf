#include "imaging/ico/IcoReader.h"
#include "imaging/ico/IcoWriter.h"
#include "imaging/image/BitmapImageRep.h"
#include "imaging/io/ImageSource.h"
#include "tests/support/Fixtures.h"
#include "tests/support/Pictures.h"
#include "tests/support/Refusals.h"

#include <QtEndian>

#include <gtest/gtest.h>

using Fixtures::color;
using Fixtures::expectPicture;
using Fixtures::paletteColor;
using Fixtures::paletteIndex;
using Fixtures::translucent;
using Refusals::expectError;

namespace {

/// The pattern with the corner that the files' masks cut off.
Fixtures::ColorAt masked(const Fixtures::ColorAt& pattern) {
    return [pattern](int x, int y) { return x + y < 3 ? QColor(0, 0, 0, 0) : pattern(x, y); };
}

constexpr qsizetype fileHeader = 6;
constexpr qsizetype entrySize = 16;

/// `file` with one number of the entry `index` of its list changed.
QByteArray withEntry(QByteArray file, int index, qsizetype field, quint32 value) {
    qToLittleEndian(value, file.data() + fileHeader + entrySize * index + field);
    return file;
}

std::vector<QSize> sizesOf(const LoadedPicture& picture) {
    std::vector<QSize> sizes;
    for (const auto& representation : picture.image.representations())
        sizes.push_back(representation->pixelSize());
    return sizes;
}

QImage bitmapOf(const LoadedPicture& picture, const QSize& size) {
    for (const auto& representation : picture.image.representations()) {
        const auto* bitmap = dynamic_cast<const BitmapImageRep*>(representation.get());
        if (bitmap != nullptr && bitmap->pixelSize() == size)
            return *bitmap->raster();
    }
    return {};
}

} // namespace

TEST(IcoPictures, bitmaps_with_a_palette_are_read_with_their_mask) {
    for (const auto& [name, count] : {std::pair("icon-1.ico", 2), {"icon-4.ico", 16}, {"icon-8.ico", 256}})
        expectPicture(name,
                      masked([count](int x, int y) { return paletteColor(paletteIndex(x, y, count)); }));
}

TEST(IcoPictures, bitmaps_of_16_bits_are_read_with_their_mask) {
    const auto wide = [](int sample) { return sample << 3 | sample >> 2; };
    expectPicture("icon-16.ico",
                  masked([&](int x, int y) { return QColor(wide(y % 4 * 8), wide(x % 4 * 8), 255); }));
}

TEST(IcoPictures, bitmaps_of_24_bits_are_read_with_their_mask) {
    expectPicture("icon-24.ico", masked(color));
}

TEST(IcoPictures, bitmaps_of_32_bits_have_alpha_in_place_of_a_mask) {
    expectPicture("icon-32.ico", translucent);
}

TEST(IcoPictures, bitmaps_of_32_bits_whose_alpha_is_zero_throughout_have_a_mask) {
    expectPicture("icon-32-mask.ico", masked(color));
}

TEST(IcoPictures, png_files_inside_are_read) {
    expectPicture("icon-png.ico", translucent);
}

TEST(IcoPictures, what_the_writer_writes_is_read) {
    const QImage small = Pictures::translucentNoise(48, 48, 1);
    const QImage large = Pictures::translucentNoise(256, 256, 2);
    const Result<LoadedPicture> picture = ImageSource::load(*encodeIco({small, large}));
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->image.size(), QSizeF(256, 256));
    EXPECT_LE(Pictures::largestDifference(bitmapOf(*picture, {256, 256}), large), 1);
    EXPECT_LE(Pictures::largestDifference(bitmapOf(*picture, {48, 48}), small), 1);
}

TEST(IcoPictures, the_largest_image_is_the_picture_and_small_sizes_have_their_own) {
    const Result<LoadedPicture> picture = ImageSource::load(fixture("icon-sizes.ico"));
    ASSERT_TRUE(picture) << picture.error().sentence.toStdString();
    EXPECT_TRUE(picture->warnings.isEmpty());
    EXPECT_EQ(picture->image.size(), QSizeF(64, 64));
    EXPECT_EQ(sizesOf(*picture).front(), QSize(64, 64));
    EXPECT_EQ(bitmapOf(*picture, {64, 64}).pixelColor(5, 5), QColor(Qt::red));
    EXPECT_EQ(bitmapOf(*picture, {16, 16}).pixelColor(5, 5), QColor(0, 255, 0)) << "that with more colours";
    EXPECT_EQ(bitmapOf(*picture, {32, 32}).pixelColor(5, 5), QColor(Qt::red)) << "a reduced copy";
}

TEST(IcoPictures, a_damaged_small_image_is_left_out_with_a_warning) {
    const QByteArray file = withEntry(fixture("icon-sizes.ico"), 2, 12, 100000);
    const Result<LoadedPicture> picture = ImageSource::load(file);
    ASSERT_TRUE(picture);
    ASSERT_EQ(picture->warnings.size(), 1);
    EXPECT_TRUE(picture->warnings.first().startsWith(
        QStringLiteral("the image of 16 × 16 pixels in the icon is left out: ")))
        << picture->warnings.first().toStdString();
}

TEST(IcoPictures, a_damaged_largest_image_is_an_error) {
    expectError(withEntry(fixture("icon-sizes.ico"), 1, 8, 60), ErrorCode::Damaged);
    expectError(withEntry(fixture("icon-24.ico"), 0, 12, 100000), ErrorCode::Damaged);
    expectError(withEntry(fixture("icon-24.ico"), 0, 8, 60), ErrorCode::Damaged);
}

TEST(IcoPictures, a_file_cut_off_at_any_byte_is_an_error) {
    for (const char* name : {"icon-4.ico", "icon-24.ico", "icon-32-mask.ico", "icon-png.ico"}) {
        SCOPED_TRACE(name);
        Refusals::expectNeedsEveryByte(fixture(name));
    }
}

TEST(IcoPictures, a_list_without_images_is_an_error) {
    expectError(QByteArray("\0\0\1\0\0\0", 6), ErrorCode::Damaged);
    expectError(QByteArray("\0\0\1\0\1\0", 6), ErrorCode::Damaged);
}

TEST(IcoPictures, a_compressed_bitmap_is_an_error) {
    QByteArray file = fixture("icon-8.ico");
    qToLittleEndian<quint32>(1, file.data() + fileHeader + entrySize + 16);
    expectError(file, ErrorCode::Damaged);
}

TEST(IcoPictures, a_bitmap_from_the_top_is_upside_down) {
    QByteArray file = fixture("icon-24.ico");
    qToLittleEndian<qint32>(-2 * Fixtures::height, file.data() + fileHeader + entrySize + 8);
    const Result<DecodedPicture> picture = ImageSource::decode(file);
    const Result<DecodedPicture> usual = ImageSource::decode(fixture("icon-24.ico"));
    ASSERT_TRUE(picture && usual);
    EXPECT_TRUE(Pictures::same(picture->raster, Pictures::mirroredTopBottom(usual->raster)));
}

TEST(IcoPictures, an_image_that_is_larger_than_icons_are_is_refused_at_once) {
    QByteArray file = fixture("icon-png.ico");
    qToBigEndian<quint32>(IcoReader::longestSide + 1, file.data() + fileHeader + entrySize + 16);
    Refusals::expectAtOnce([&] { expectError(file, ErrorCode::TooLarge); });
}

TEST(IcoPictures, very_many_images_are_read_at_once) {
    // 65535 times the same bitmap, each time with another size in the list.
    const QByteArray one = fixture("icon-32.ico").sliced(fileHeader + entrySize);
    constexpr int count = 65535;
    QByteArray file("\0\0\1\0\xff\xff", 6);
    for (int i = 0; i < count; ++i) {
        QByteArray entry = fixture("icon-32.ico").sliced(fileHeader, entrySize);
        entry[0] = static_cast<char>(i % 256);
        entry[1] = static_cast<char>(i / 256 | 128);
        qToLittleEndian<quint32>(static_cast<quint32>(fileHeader + entrySize * count), entry.data() + 12);
        file += entry;
    }
    file += one;
    Refusals::expectAtOnce([&] {
        const Result<LoadedPicture> picture = ImageSource::load(file);
        ASSERT_TRUE(picture);
        EXPECT_EQ(picture->image.size(), QSizeF(Fixtures::width, Fixtures::height));
    });
}
