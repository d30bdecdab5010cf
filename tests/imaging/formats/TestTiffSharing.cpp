// Which TIFF pictures share the bytes of their file, and which have to be copied.

#include "imaging/formats/TiffWriter.h"
#include "imaging/io/ImageSource.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

constexpr int sharedWidth = 37;
constexpr int sharedHeight = 29;

QByteArray plainTiff() {
    return *encodeTiff(Pictures::translucentNoise(sharedWidth, sharedHeight, 3), TiffCompression::None);
}

bool shares(const QImage& raster, const QByteArray& file) {
    const auto* begin = reinterpret_cast<const uchar*>(file.constData());
    return raster.constBits() >= begin && raster.constBits() < begin + file.size();
}

/// Where the only strip of `plainTiff` begins.
qsizetype samplesIn(const QByteArray& file) {
    const QImage picture = Pictures::translucentNoise(sharedWidth, sharedHeight, 3);
    return file.indexOf(
        QByteArray(reinterpret_cast<const char*>(picture.constBits()), picture.sizeInBytes()));
}

} // namespace

TEST(TiffSharing, plain_samples_are_shared_and_outlive_the_file) {
    const QImage expected = Pictures::translucentNoise(sharedWidth, sharedHeight, 3);
    QByteArray file = plainTiff();
    Result<DecodedPicture> decoded = ImageSource::decode(file);
    ASSERT_TRUE(decoded);
    EXPECT_TRUE(shares(decoded->raster, file));
    QImage raster = decoded->raster;
    decoded->raster = QImage();
    file = QByteArray();
    EXPECT_TRUE(raster == expected);
}

TEST(TiffSharing, a_changed_raster_leaves_the_file_as_it_is) {
    const QByteArray file = plainTiff();
    const QByteArray before(file.constData(), file.size());
    Result<DecodedPicture> decoded = ImageSource::decode(file);
    ASSERT_TRUE(decoded);
    decoded->raster.fill(0);
    EXPECT_FALSE(shares(decoded->raster, file));
    EXPECT_EQ(file, before);
}

TEST(TiffSharing, colours_above_their_alpha_are_lowered_and_not_shared) {
    QByteArray file = plainTiff();
    const qsizetype samples = samplesIn(file);
    ASSERT_GT(samples, 0);
    file[samples] = '\xff';
    file[samples + 3] = '\x10';
    const Result<DecodedPicture> decoded = ImageSource::decode(file);
    ASSERT_TRUE(decoded);
    EXPECT_FALSE(shares(decoded->raster, file));
    EXPECT_EQ(decoded->raster.constBits()[0], 0x10);
}

TEST(TiffSharing, a_small_part_of_a_file_is_copied) {
    const QByteArray file = plainTiff() + QByteArray(100000, '\0');
    const Result<DecodedPicture> decoded = ImageSource::decode(file);
    ASSERT_TRUE(decoded);
    EXPECT_FALSE(shares(decoded->raster, file));
    EXPECT_TRUE(decoded->raster == Pictures::translucentNoise(sharedWidth, sharedHeight, 3));
}

TEST(TiffSharing, a_wrong_length_of_the_only_strip_costs_no_sample) {
    QByteArray file = plainTiff();
    // The directory's entry of StripByteCounts: tag 279, one number of 32 bits.
    const QByteArray entry("\x17\x01\x04\x00\x01\x00\x00\x00", 8);
    const qsizetype at = file.indexOf(entry);
    ASSERT_GT(at, 0);
    quint32 length = 0;
    std::memcpy(&length, file.constData() + at + entry.size(), sizeof length);
    ASSERT_EQ(length, 4U * sharedWidth * sharedHeight);
    length -= 4 * sharedWidth;
    std::memcpy(file.data() + at + entry.size(), &length, sizeof length);
    // libtiff corrects the length.
    const Result<DecodedPicture> decoded = ImageSource::decode(file);
    ASSERT_TRUE(decoded);
    EXPECT_TRUE(decoded->raster == Pictures::translucentNoise(sharedWidth, sharedHeight, 3));
}
