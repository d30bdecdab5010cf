#include "imaging/formats/Jpeg2000Codestream.h"
#include "imaging/icns/IcnsEncoding.h"
#include "imaging/icns/IcnsInspection.h"
#include "imaging/icns/IcnsReader.h"
#include "imaging/png/PngWriter.h"
#include "tests/support/IcnsBytes.h"
#include "tests/support/Pictures.h"
#include "tests/support/Refusals.h"

#include <gtest/gtest.h>

#include <limits>

using IcnsBytes::element;
using IcnsBytes::icns;
using IcnsBytes::number;

namespace {

IcnsPictureInfo infoOf(const char (&type)[5], const QByteArray& data) {
    return icnsPictureInfo(*icnsElementType(type), data);
}

/// The beginning of a codestream of one component, with these eight numbers: right, bottom, left, top, and
/// the width, height, left and top of tiles.
QByteArray codestream(std::initializer_list<quint32> numbers) {
    QByteArray bytes("\xFF\x4F\xFF\x51\0\x29\0\0", 8);
    for (const quint32 value : numbers)
        bytes += number(value);
    return bytes + QByteArray("\0\1\7\1\1", 5);
}

const QByteArray jp2Start("\0\0\0\x0cjP  \r\n\x87\n", 12);

QByteArray box(const char* type, const QByteArray& data) {
    return number(static_cast<quint32>(8 + data.size())) + type + data;
}

/// `file` with zeros behind it. It is as long as plain samples of 16 × 16 pixels.
QByteArray asLongAsPlain(const QByteArray& file) {
    return file.leftJustified(1024, '\0');
}

constexpr quint32 largest = std::numeric_limits<quint32>::max();

} // namespace

TEST(IcnsEncoding, a_png_tells_its_size_in_its_first_chunk) {
    const QByteArray png = *encodePng(Pictures::flat(7, 5, Qt::red));
    EXPECT_EQ(infoOf("ic07", png).encoding, IcnsEncoding::Png);
    EXPECT_EQ(infoOf("ic07", png).size, QSize(7, 5));
    for (qsizetype length = 8; length < 24; ++length)
        EXPECT_FALSE(infoOf("ic07", png.first(length)).size.isValid());
    QByteArray huge = png;
    huge.replace(16, 4, number(0x80000000));
    EXPECT_FALSE(infoOf("ic07", huge).size.isValid());
    huge = png;
    huge.replace(20, 4, number(0x80000000));
    EXPECT_FALSE(infoOf("ic07", huge).size.isValid());
}

TEST(IcnsEncoding, a_codestream_tells_its_size_and_its_tiles) {
    EXPECT_EQ(infoOf("ic07", codestream({70, 50, 0, 0, 70, 50, 0, 0})).size, QSize(70, 50));
    EXPECT_EQ(infoOf("ic07", codestream({70, 50, 10, 20, 70, 50, 0, 0})).size, QSize(60, 30));
    EXPECT_EQ(infoOf("ic07", codestream({1024, 1024, 0, 0, 32, 32, 0, 0})).size, QSize(1024, 1024));
    const std::initializer_list<quint32> wrong[] = {
        {10, 50, 20, 0, 70, 50, 0, 0},
        {70, 10, 0, 20, 70, 50, 0, 0},
        {1024, 1024, 0, 0, 31, 32, 0, 0},
        {70, 50, 0, 0, 0, 50, 0, 0},
        {70, 50, 0, 0, 70, 0, 0, 0},
        {70, 50, 0, 0, 70, 50, 71, 0},
        {70, 50, 0, 0, 70, 50, 0, 51},
        {largest, 50, 0, 0, largest, 50, 0, 0},
        {70, largest, 0, 0, 70, largest, 0, 0},
    };
    for (const auto& numbers : wrong) {
        const IcnsPictureInfo info = infoOf("ic07", codestream(numbers));
        EXPECT_EQ(info.encoding, IcnsEncoding::Jpeg2000);
        EXPECT_FALSE(info.size.isValid());
    }
    const QByteArray whole = codestream({70, 50, 0, 0, 70, 50, 0, 0});
    for (qsizetype length = 4; length < 40; ++length)
        EXPECT_FALSE(infoOf("ic07", whole.first(length)).size.isValid());
}

TEST(IcnsEncoding, a_jp2_file_tells_the_size_of_its_first_codestream) {
    const QByteArray stream = codestream({70, 50, 0, 0, 70, 50, 0, 0});
    EXPECT_EQ(infoOf("ic07", jp2Start + box("ftyp", "jp2 ") + box("jp2c", stream)).size, QSize(70, 50));
    EXPECT_EQ(infoOf("ic07", jp2Start + number(0) + "jp2c" + stream).size, QSize(70, 50));
    const QByteArray longBox = number(1) + "free" + number(0) + number(20) + "four" + box("jp2c", stream);
    EXPECT_EQ(infoOf("ic07", jp2Start + longBox).size, QSize(70, 50));
    for (const QByteArray& wrong :
         {QByteArray(), box("ftyp", "jp2 "), box("jp2c", "no stream"), number(1) + "free",
          number(1) + "free" + number(0), number(1) + "free" + number(0) + number(8), number(7) + "free",
          number(1) + "free" + number(largest) + number(0) + box("jp2c", stream), number(0) + "free" + stream,
          number(20), box("free", "") + "jp2"})
        EXPECT_FALSE(infoOf("ic07", jp2Start + wrong).size.isValid()) << wrong.toHex().constData();
}

TEST(IcnsEncoding, files_that_are_as_long_as_plain_samples_are_files) {
    EXPECT_EQ(infoOf("ic04", asLongAsPlain(*encodePng(Pictures::flat(16, 16, Qt::red)))).encoding,
              IcnsEncoding::Png);
    const QByteArray stream = codestream({16, 16, 0, 0, 16, 16, 0, 0});
    EXPECT_EQ(infoOf("ic04", asLongAsPlain(stream)).encoding, IcnsEncoding::Jpeg2000);
    EXPECT_EQ(infoOf("ic04", asLongAsPlain(jp2Start + box("jp2c", stream))).encoding, IcnsEncoding::Jpeg2000);
    const QByteArray channel("\xff"
                             "a\xfb"
                             "a",
                             4);
    EXPECT_EQ(infoOf("ic04", asLongAsPlain("ARGB" + channel.repeated(4))).encoding, IcnsEncoding::PackedArgb);
    // Two runs of 129 pass the end of the last channel.
    const QByteArray samples = ("ARGB" + channel.repeated(3)).leftJustified(1024, '\xfe');
    EXPECT_EQ(infoOf("ic04", samples).encoding, IcnsEncoding::PlainArgb);
}

TEST(IcnsEncoding, samples_are_given_of_elements_that_hold_some) {
    const QByteArray png = *encodePng(Pictures::flat(16, 16, Qt::red));
    const QByteArray file =
        icns(element("icp4", png) + element("s8mk", QByteArray(256, 'x')) + element("abcd", "x") +
             element("ic05", "nothing") + element("ic04", QByteArray("\x80\1\2\3", 4).repeated(256)));
    const Result<IcnsReader> reader = IcnsReader::open(file);
    ASSERT_TRUE(reader);
    for (const char* type : {"icp4", "s8mk", "abcd"})
        EXPECT_EQ(reader->samples(*reader->element(FourCharCode(qFromBigEndian<quint32>(type)))).error().code,
                  ErrorCode::Unsupported);
    EXPECT_EQ(reader->samples(*reader->element("ic05")).error().code, ErrorCode::Damaged);
    const Result<QImage> samples = reader->samples(*reader->element("ic04"));
    ASSERT_TRUE(samples);
    EXPECT_EQ(samples->format(), QImage::Format_RGBA8888);
    EXPECT_EQ(QByteArray(reinterpret_cast<const char*>(samples->constBits()), 4),
              QByteArray("\1\2\3\x80", 4));
}

TEST(IcnsEncoding, the_largest_picture_is_the_one_that_says_so) {
    const QByteArray small = *encodePng(Pictures::flat(7, 5, Qt::red));
    const QByteArray large = *encodePng(Pictures::flat(64, 64, Qt::red));
    const QByteArray file = icns(element("ic10", small) + element("ic12", large) + element("ic11", small));
    EXPECT_EQ(IcnsReader::open(file)->largestElement()->type, FourCharCode("ic12"));
    const QByteArray none = icns(element("abcd", "x"));
    EXPECT_EQ(IcnsReader::open(none)->largestElement(), nullptr);
}

TEST(IcnsEncoding, every_encoding_has_a_name) {
    const IcnsEncoding encodings[] = {
        IcnsEncoding::Unknown,      IcnsEncoding::Png,       IcnsEncoding::Jpeg2000, IcnsEncoding::PackedArgb,
        IcnsEncoding::PackedColors, IcnsEncoding::PlainArgb, IcnsEncoding::Mask};
    QStringList names;
    for (const IcnsEncoding encoding : encodings)
        names << icnsEncodingName(encoding);
    EXPECT_EQ(names,
              QStringList({QStringLiteral("unknown"), QStringLiteral("PNG"), QStringLiteral("JPEG 2000"),
                           QStringLiteral("packed ARGB"), QStringLiteral("packed RGB"),
                           QStringLiteral("plain ARGB"), QStringLiteral("mask")}));
}

TEST(IcnsEncoding, every_tile_of_a_codestream_must_be_there) {
    // Two tiles of 16 × 16; a header's own marker; parts without data, each 12 bytes long.
    const QByteArray header = codestream({32, 16, 0, 0, 16, 16, 0, 0}) + QByteArray("\xff\x64\0\4ab", 6);
    const auto part = [](char tile, quint32 length = 12) {
        return QByteArray("\xff\x90\0\x0a\0", 5) + tile + number(length) + QByteArray("\0\1", 2);
    };
    using Jpeg2000Codestream::hasAllTiles;
    EXPECT_TRUE(hasAllTiles(header + part(0) + part(1) + QByteArray("\xff\xd9", 2)));
    EXPECT_TRUE(hasAllTiles(header + part(1) + part(1) + part(0, 0)));
    EXPECT_FALSE(hasAllTiles(header + part(0) + part(0)));
    EXPECT_FALSE(hasAllTiles(header + part(0, 0) + part(1)));
    EXPECT_FALSE(hasAllTiles(header + part(0) + part(2)));
    EXPECT_FALSE(hasAllTiles(header));
    const QByteArray whole = header + part(0) + part(1);
    Refusals::eachBeginning(
        whole, [](const QByteArray& bytes) { EXPECT_FALSE(hasAllTiles(bytes)); }, 2);
}
