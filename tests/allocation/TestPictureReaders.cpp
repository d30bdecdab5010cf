#include "imaging/io/ImageSource.h"
#include "tests/allocation/FailingAllocations.h"
#include "tests/allocation/Families.h"
#include "tests/support/Fixtures.h"
#include "tests/support/Pictures.h"

#include <QBuffer>
#include <QtEndian>

#include <gtest/gtest.h>

#include <initializer_list>

using FailingAllocations::expectFailuresOf;
using FailingAllocations::expectFailuresOfLarge;
using FailingAllocations::hasSucceeded;

namespace {

/// Reads a file. Expects its pixels and warnings as they always are, or want of memory.
class Reading {
  public:
    explicit Reading(QByteArray file) : m_file(std::move(file)), m_expected(ImageSource::decode(m_file)) {}

    bool isWhole() const {
        const Result<DecodedPicture> picture = ImageSource::decode(m_file);
        EXPECT_TRUE(!picture || Pictures::same(picture->raster, m_expected->raster));
        EXPECT_TRUE(!picture || picture->warnings == m_expected->warnings);
        return hasSucceeded(picture);
    }

  private:
    QByteArray m_file;
    Result<DecodedPicture> m_expected;
};

/// lcms reads what it did not get, and keeps what it has made so far.
const FailingAllocations::Libraries lcms{"liblcms2"};
const FailingAllocations::Libraries qtAndLcms{"libQt6", "liblcms2"};

void expectWholeOrNone(std::initializer_list<const char*> names) {
    for (const char* name : names) {
        SCOPED_TRACE(name);
        const Reading reading(fixture(name));
        expectFailuresOf([&] { return reading.isWhole(); }, qtAndLcms);
    }
}

void expectWholeOrNoneOfLarge(std::size_t bytes, const QByteArray& file) {
    const Reading reading(file);
    expectFailuresOfLarge(
        bytes, [&] { return reading.isWhole(); }, lcms);
}

QByteArray bmp(const QImage& picture) {
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(picture.save(&buffer, "BMP"));
    return file;
}

/// The little-endian TIFF file with its profile made so long, by bytes that mean nothing.
QByteArray withLongProfile(QByteArray tiff, qsizetype length) {
    constexpr quint16 profileTag = 34675;
    const auto directory = qFromLittleEndian<quint32>(tiff.constData() + 4);
    const auto count = qFromLittleEndian<quint16>(tiff.constData() + directory);
    for (quint32 i = 0; i < count; ++i) {
        const qsizetype entry = directory + 2 + 12 * qsizetype{i};
        if (qFromLittleEndian<quint16>(tiff.constData() + entry) != profileTag)
            continue;
        const QByteArray profile = tiff.mid(qFromLittleEndian<quint32>(tiff.constData() + entry + 8),
                                            qFromLittleEndian<quint32>(tiff.constData() + entry + 4));
        qToLittleEndian(static_cast<quint32>(length), tiff.data() + entry + 4);
        qToLittleEndian(static_cast<quint32>(tiff.size()), tiff.data() + entry + 8);
        return tiff + profile.leftJustified(length, '\0');
    }
    return {};
}

} // namespace

TEST(PictureReaderAllocations, png_is_whole_or_none) {
    expectWholeOrNone({"rgba-8.png", "interlaced-rgba-16.png", "palette-4.png", "display-p3.png",
                       "grey-icc.png", "gamma-linear.png", "orientation-6.png", "broken-icc.png"});
}

TEST(PictureReaderAllocations, jpeg_is_whole_or_none) {
    expectWholeOrNone({"rgb.jpg", "progressive.jpg", "display-p3.jpg", "orientation-6.jpg",
                       "cmyk-adobe-icc.jpg", "broken-icc.jpg"});
}

TEST(PictureReaderAllocations, tiff_is_whole_or_none) {
    // Of less libtiff reads what it did not get.
    constexpr std::size_t large = 3000;
    expectWholeOrNoneOfLarge(large, fixture("rgb-lzw.tif"));
    expectWholeOrNoneOfLarge(large, withLongProfile(fixture("display-p3.tif"), 4096));
}

TEST(PictureReaderAllocations, gif_is_whole_or_none) {
    expectWholeOrNone({"plain.gif", "local-colors.gif", "interlaced.gif", "transparent.gif"});
}

TEST(PictureReaderAllocations, webp_is_whole_or_none) {
    // Of less libwebp reads what it did not get.
    constexpr std::size_t large = 30000;
    expectWholeOrNoneOfLarge(large, fixture("large.webp"));
}

TEST(PictureReaderAllocations, bmp_is_whole_or_none) {
    constexpr std::size_t large = 4000; // Qt takes less for itself, and does not check that
    const QImage colors = Pictures::noise(64, 64, 1);
    for (const QImage::Format format : {QImage::Format_RGB32, QImage::Format_Indexed8}) {
        SCOPED_TRACE(format);
        expectWholeOrNoneOfLarge(large, bmp(colors.convertToFormat(format)));
    }
}

TEST(PictureReaderAllocations, an_icns_file_is_read_with_all_its_pictures_or_not) {
    const QByteArray file = Families::ofEveryKind();
    const Result<LoadedPicture> expected = ImageSource::load(file);
    ASSERT_TRUE(expected);
    expectFailuresOf(
        [&] {
            const Result<LoadedPicture> picture = ImageSource::load(file);
            EXPECT_TRUE(!picture || picture->warnings == expected->warnings);
            EXPECT_TRUE(!picture ||
                        picture->image.representations().size() == expected->image.representations().size());
            return hasSucceeded(picture);
        },
        FailingAllocations::fragile);
}
