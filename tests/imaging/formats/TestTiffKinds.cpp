// TIFF pictures in the layouts that libtiff can write. libtiff writes them here.

#include "imaging/formats/TiffStream.h"
#include "imaging/io/ImageSource.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>
#include <lcms2.h>

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace {

constexpr int side = 40;

struct Kind {
    std::uint16_t photometric = PHOTOMETRIC_MINISBLACK;
    std::uint16_t samples = 1;
    std::uint16_t planes = PLANARCONFIG_CONTIG;
    std::uint16_t compression = COMPRESSION_NONE;
    bool isTiled = false;
    QByteArray icc = {};
};

/// A picture in which every pixel has the samples `pixel`.
QByteArray tiffFile(const Kind& kind, const std::vector<std::uint8_t>& pixel) {
    TiffStream stream(qsizetype{1} << 16);
    TIFF* file = stream.handle();
    constexpr std::uint32_t tileSide = 16;
    TIFFSetField(file, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(side));
    TIFFSetField(file, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(side));
    TIFFSetField(file, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(file, TIFFTAG_SAMPLESPERPIXEL, kind.samples);
    TIFFSetField(file, TIFFTAG_PHOTOMETRIC, kind.photometric);
    TIFFSetField(file, TIFFTAG_PLANARCONFIG, kind.planes);
    TIFFSetField(file, TIFFTAG_COMPRESSION, kind.compression);
    if (!kind.icc.isEmpty())
        TIFFSetField(file, TIFFTAG_ICCPROFILE, static_cast<std::uint32_t>(kind.icc.size()),
                     kind.icc.constData());
    if (kind.isTiled) {
        TIFFSetField(file, TIFFTAG_TILEWIDTH, tileSide);
        TIFFSetField(file, TIFFTAG_TILELENGTH, tileSide);
    } else {
        TIFFSetField(file, TIFFTAG_ROWSPERSTRIP, 16U);
    }
    if (kind.photometric == PHOTOMETRIC_YCBCR) {
        TIFFSetField(file, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
        TIFFSetField(file, TIFFTAG_JPEGQUALITY, 100);
    }
    const bool hasPlanes = kind.planes == PLANARCONFIG_SEPARATE;
    const std::uint32_t blocks = kind.isTiled ? TIFFNumberOfTiles(file) : TIFFNumberOfStrips(file);
    const std::uint32_t blocksPerPlane = hasPlanes ? blocks / kind.samples : blocks;
    for (std::uint32_t block = 0; block < blocks; ++block) {
        const tmsize_t bytes = kind.isTiled
                                   ? TIFFTileSize(file)
                                   : TIFFVStripSize(file, std::min(16U, side - block % blocksPerPlane * 16));
        std::vector<std::uint8_t> samples(static_cast<std::size_t>(bytes));
        for (std::size_t i = 0; i < samples.size(); ++i)
            samples[i] = hasPlanes ? pixel[block / blocksPerPlane] : pixel[i % pixel.size()];
        if (kind.isTiled)
            TIFFWriteEncodedTile(file, block, samples.data(), bytes);
        else
            TIFFWriteEncodedStrip(file, block, samples.data(), bytes);
    }
    return stream.close();
}

/// A grey profile of linear samples.
QByteArray linearGrey() {
    cmsToneCurve* curve = cmsBuildGamma(nullptr, 1);
    const std::unique_ptr<void, cmsBool (*)(cmsHPROFILE)> profile(cmsCreateGrayProfile(cmsD50_xyY(), curve),
                                                                  cmsCloseProfile);
    cmsFreeToneCurve(curve);
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile.get(), nullptr, &size);
    QByteArray icc(static_cast<qsizetype>(size), '\0');
    cmsSaveProfileToMem(profile.get(), icc.data(), &size);
    return icc;
}

void expectFlat(const QByteArray& file, const QColor& color, int tolerance) {
    const Result<DecodedPicture> picture = ImageSource::decode(file);
    ASSERT_TRUE(picture) << picture.error().sentence.toStdString();
    EXPECT_TRUE(picture->warnings.isEmpty()) << picture->warnings.join(u' ').toStdString();
    ASSERT_EQ(picture->raster.size(), QSize(side, side));
    EXPECT_LE(Pictures::largestDifference(picture->raster, Pictures::flat(side, side, color)), tolerance);
}

} // namespace

TEST(TiffKinds, white_may_be_zero) {
    expectFlat(tiffFile({.photometric = PHOTOMETRIC_MINISWHITE}, {55}), QColor(200, 200, 200), 0);
}

TEST(TiffKinds, tiles_beyond_the_edge_are_cut_off) {
    expectFlat(tiffFile({.photometric = PHOTOMETRIC_RGB, .samples = 3, .isTiled = true}, {10, 20, 30}),
               QColor(10, 20, 30), 0);
}

TEST(TiffKinds, planes_come_one_after_another) {
    for (const bool isTiled : {false, true})
        expectFlat(tiffFile({.photometric = PHOTOMETRIC_RGB,
                             .samples = 3,
                             .planes = PLANARCONFIG_SEPARATE,
                             .compression = COMPRESSION_LZW,
                             .isTiled = isTiled},
                            {10, 20, 30}),
                   QColor(10, 20, 30), 0);
}

TEST(TiffKinds, ink_in_tiles_and_planes_is_ink) {
    for (const bool isTiled : {false, true})
        for (const int planes : {PLANARCONFIG_CONTIG, PLANARCONFIG_SEPARATE})
            expectFlat(tiffFile({.photometric = PHOTOMETRIC_SEPARATED,
                                 .samples = 4,
                                 .planes = static_cast<std::uint16_t>(planes),
                                 .isTiled = isTiled},
                                {255, 0, 51, 0}),
                       QColor(0, 255, 204), 0);
}

TEST(TiffKinds, JPEG_compressed_pictures_are_read_in_colour_and_grey) {
    expectFlat(tiffFile({.photometric = PHOTOMETRIC_YCBCR, .samples = 3, .compression = COMPRESSION_JPEG},
                        {60, 120, 180}),
               QColor(60, 120, 180), 2);
    expectFlat(tiffFile({.compression = COMPRESSION_JPEG}, {128}), QColor(128, 128, 128), 1);
}

TEST(TiffKinds, a_grey_profile_counts_in_every_layout) {
    // Half of the light is 188 of 255 in sRGB.
    const QColor half(188, 188, 188);
    const QByteArray icc = linearGrey();
    expectFlat(tiffFile({.icc = icc}, {128}), half, 1);
    expectFlat(tiffFile({.isTiled = true, .icc = icc}, {128}), half, 1);
    expectFlat(tiffFile({.compression = COMPRESSION_JPEG, .icc = icc}, {128}), half, 1);
    expectFlat(tiffFile({.photometric = PHOTOMETRIC_MINISWHITE, .icc = icc}, {127}), half, 1);
}

TEST(TiffKinds, a_JPEG_compressed_picture_that_breaks_off_inside_is_an_error) {
    QByteArray file = tiffFile(
        {.photometric = PHOTOMETRIC_YCBCR, .samples = 3, .compression = COMPRESSION_JPEG}, {60, 120, 180});
    ASSERT_TRUE(ImageSource::decode(file));
    // The end marker comes directly after the last strip's scan header: the decoder would make up the pixels.
    const qsizetype scan = file.lastIndexOf("\xff\xda");
    ASSERT_GT(scan, 0);
    const qsizetype samples =
        scan + 2 + (static_cast<uchar>(file[scan + 2]) << 8 | static_cast<uchar>(file[scan + 3]));
    ASSERT_LT(samples + 2, file.size());
    file[samples] = '\xff';
    file[samples + 1] = '\xd9';
    const Result<DecodedPicture> picture = ImageSource::decode(file);
    ASSERT_FALSE(picture);
    EXPECT_EQ(picture.error().code, ErrorCode::Damaged);
}

TEST(TiffKinds, a_block_without_a_place_is_an_error) {
    // The second strip's place is zero: the library would take the file's own header for its samples.
    QByteArray file = tiffFile({.photometric = PHOTOMETRIC_RGB, .samples = 3}, {10, 20, 30});
    TiffStream stream(file);
    const auto place = static_cast<quint32>(TIFFGetStrileOffset(stream.handle(), 1));
    ASSERT_GT(place, 0U);
    const QByteArray written(reinterpret_cast<const char*>(&place), 4);
    const qsizetype at = file.lastIndexOf(written);
    ASSERT_GT(at, 0);
    file.replace(at, 4, QByteArray(4, '\0'));
    const Result<DecodedPicture> picture = ImageSource::decode(file);
    ASSERT_FALSE(picture);
    EXPECT_EQ(picture.error().code, ErrorCode::Damaged);
}

TEST(TiffKinds, a_profile_that_breaks_off_is_an_error) {
    QByteArray file = tiffFile({.icc = linearGrey()}, {128});
    ASSERT_TRUE(ImageSource::decode(file));
    const qsizetype profile = file.indexOf("acsp");
    ASSERT_GT(profile, 0);
    // The directory and the profile stand at the end.
    file.chop(1);
    EXPECT_FALSE(ImageSource::decode(file));
}

TEST(TiffKinds, a_profile_far_longer_than_the_file_is_an_error) {
    QByteArray file = tiffFile({.icc = linearGrey()}, {128});
    // The directory's entry: tag, type, length.
    const std::array<quint16, 2> tagAndType{TIFFTAG_ICCPROFILE, TIFF_UNDEFINED};
    const QByteArray entry(reinterpret_cast<const char*>(tagAndType.data()), sizeof tagAndType);
    const qsizetype at = file.lastIndexOf(entry);
    ASSERT_GT(at, 0);
    for (const quint32 length : {0x100000U, 0x10000000U, 0x7fffffffU}) {
        file.replace(at + entry.size(), 4, QByteArray(reinterpret_cast<const char*>(&length), 4));
        const Result<DecodedPicture> picture = ImageSource::decode(file);
        ASSERT_FALSE(picture) << length;
        EXPECT_EQ(picture.error().code, ErrorCode::Damaged) << length;
    }
}
