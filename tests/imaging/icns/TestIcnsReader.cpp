#include "imaging/icns/IcnsReader.h"
#include "imaging/io/ImageSource.h"
#include "imaging/png/PngWriter.h"
#include "tests/support/Fixtures.h"
#include "tests/support/IcnsBytes.h"
#include "tests/support/Pictures.h"
#include "tests/support/Refusals.h"
#include "tests/support/Slowness.h"

#include <QElapsedTimer>
#include <QFile>
#include <QtEndian>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using IcnsBytes::element;
using IcnsBytes::icns;
using IcnsBytes::number;
using Pictures::Pixel;
using Pictures::pixel;
using Refusals::eachBeginning;
using Refusals::expectError;
using Refusals::expectNeedsEveryByte;

namespace {

/// A sample of a test picture: red, green, blue (channels 0 to 2) or alpha (3).
int sample(int channel, int x, int y) {
    const int values[] = {(37 * x + 5 * y) % 256, (11 * x + 53 * y) % 256, (71 * x + 29 * y) % 256,
                          (8 * x + 15 * y) % 256};
    return values[channel];
}

QByteArray plane(int channel, int side) {
    QByteArray bytes;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            bytes.append(static_cast<char>(sample(channel, x, y)));
    }
    return bytes;
}

/// `bytes` packed as literals, without runs.
QByteArray literals(const QByteArray& bytes) {
    QByteArray packed;
    for (qsizetype at = 0; at < bytes.size(); at += 128) {
        const QByteArray part = bytes.mid(at, 128);
        packed.append(static_cast<char>(part.size() - 1));
        packed.append(part);
    }
    return packed;
}

/// A packed plane of one value; its size must be a sum of runs of 3 to 130.
QByteArray runs(int value, int count) {
    QByteArray packed;
    while (count > 0) {
        const int length = count - 130 >= 3 || count == 130 ? 130 : std::min(count, 127);
        packed.append(static_cast<char>(length + 125));
        packed.append(static_cast<char>(value));
        count -= length;
    }
    return packed;
}

QByteArray packedColors(int side) {
    return literals(plane(0, side)) + literals(plane(1, side)) + literals(plane(2, side));
}

QImage expectedPicture(int side, bool isOpaque) {
    return Pictures::raster(side, side, [isOpaque](int x, int y) {
        return QColor(sample(0, x, y), sample(1, x, y), sample(2, x, y), isOpaque ? 255 : sample(3, x, y));
    });
}

QByteArray plainArgb(int side) {
    QByteArray bytes;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            for (const int channel : {3, 0, 1, 2})
                bytes.append(static_cast<char>(sample(channel, x, y)));
        }
    }
    return bytes;
}

QByteArray png(int side, const QColor& color) {
    return *encodePng(Pictures::flat(side, side, color));
}

void expectPicture(const QByteArray& file, const QImage& expected) {
    const Result<DecodedPicture> picture = ImageSource::decode(file);
    ASSERT_TRUE(picture) << picture.error().sentence.toStdString();
    ASSERT_EQ(picture->raster.size(), expected.size());
    ASSERT_EQ(picture->raster.format(), QImage::Format_RGBA8888_Premultiplied);
    EXPECT_EQ(Pictures::largestDifference(picture->raster, expected), 0);
}

struct ColorsType {
    const char* colors;
    const char* mask;
    int side;
    QByteArray start;
};

const ColorsType colorsTypes[] = {{"is32", "s8mk", 16, {}},
                                  {"il32", "l8mk", 32, {}},
                                  {"ih32", "h8mk", 48, {}},
                                  {"it32", "t8mk", 128, QByteArray(4, '\0')}};

} // namespace

TEST(IcnsReader, elements_are_listed_in_the_files_order_unknown_ones_too) {
    const QByteArray file = icns(element("TOC ", "12345678") + element("ic07", "abc") + element("zzzz", {}));
    const Result<IcnsReader> reader = IcnsReader::open(file);
    ASSERT_TRUE(reader);
    ASSERT_EQ(reader->elements().size(), 3U);
    EXPECT_EQ(reader->elements()[0].type, FourCharCode("TOC "));
    EXPECT_EQ(reader->elements()[0].data.toByteArray(), QByteArray("12345678"));
    EXPECT_EQ(reader->elements()[1].type, FourCharCode("ic07"));
    EXPECT_EQ(reader->elements()[1].data.toByteArray(), QByteArray("abc"));
    EXPECT_EQ(reader->elements()[2].type, FourCharCode("zzzz"));
    EXPECT_TRUE(reader->elements()[2].data.isEmpty());
    EXPECT_EQ(reader->element("ic07"), &reader->elements()[1]);
    EXPECT_EQ(reader->element("ic08"), nullptr);
}

TEST(IcnsReader, png_elements_of_every_type_are_read) {
    struct Type {
        const char* code;
        int side;
    };
    for (const auto& [code, side] :
         {Type{"ic10", 1024}, Type{"ic09", 512}, Type{"ic14", 512}, Type{"ic08", 256}, Type{"ic13", 256},
          Type{"ic07", 128}, Type{"icp6", 64}, Type{"ic12", 64}, Type{"icp5", 32}, Type{"ic11", 32},
          Type{"icp4", 16}}) {
        SCOPED_TRACE(code);
        expectPicture(icns(element(code, png(side, QColor(10, 20, 30, 128)))),
                      Pictures::flat(side, side, QColor(10, 20, 30, 128)));
    }
}

TEST(IcnsReader, a_jpeg_2000_element_is_read) {
    const std::vector<Pixel> blocks = {{200, 40, 40, 255},  {40, 180, 60, 255},   {50, 60, 220, 255},
                                       {230, 220, 60, 255}, {128, 128, 128, 255}, {20, 20, 20, 255}};
    const Result<DecodedPicture> picture = ImageSource::decode(fixture("jpeg-2000.icns"));
    ASSERT_TRUE(picture) << picture.error().sentence.toStdString();
    ASSERT_EQ(picture->raster.size(), QSize(128, 128));
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(pixel(picture->raster, i % 3 * 42 + 20, i / 3 * 64 + 32),
                  blocks[static_cast<std::size_t>(i)])
            << i;
}

TEST(IcnsReader, a_jpeg_2000_element_that_breaks_off_is_an_error) {
    const QByteArray data = fixture("jpeg-2000.icns").mid(16);
    ASSERT_GT(data.size(), 1000);
    for (const qsizetype length : {12, 40, 100, 200, 500, 1000})
        EXPECT_FALSE(ImageSource::decode(icns(element("ic07", data.left(length))))) << length << " bytes";
}

TEST(IcnsReader, packed_argb_is_read) {
    expectPicture(icns(element("ic04", "ARGB" + literals(plane(3, 16)) + packedColors(16))),
                  expectedPicture(16, false));
    expectPicture(icns(element("ic05", "ARGB" + literals(plane(3, 32)) + packedColors(32))),
                  expectedPicture(32, false));
}

TEST(IcnsReader, runs_of_every_length_are_unpacked) {
    // Runs of 3, 4, … as long as they fit, then literals.
    QByteArray packed;
    QByteArray unpacked;
    constexpr int pixels = 128 * 128;
    for (int length = 3; length <= 130; ++length) {
        packed.append(static_cast<char>(length + 125));
        packed.append(static_cast<char>(length));
        unpacked.append(length, static_cast<char>(length));
    }
    const QByteArray rest(pixels - unpacked.size(), '\x05');
    packed += literals(rest);
    unpacked += rest;
    expectPicture(icns(element("it32", QByteArray(4, '\0') + packed + runs(7, pixels) + runs(9, pixels))),
                  Pictures::raster(128, 128, [&](int x, int y) {
                      return QColor(static_cast<uchar>(unpacked[128 * y + x]), 7, 9);
                  }));
}

TEST(IcnsReader, packed_colours_with_their_mask_are_read) {
    for (const ColorsType& type : colorsTypes) {
        SCOPED_TRACE(type.colors);
        const QByteArray colors = element(type.colors, type.start + packedColors(type.side));
        const QByteArray mask = element(type.mask, plane(3, type.side));
        expectPicture(icns(colors + mask), expectedPicture(type.side, false));
        expectPicture(icns(mask + colors), expectedPicture(type.side, false));
    }
}

TEST(IcnsReader, colours_without_their_mask_are_opaque) {
    for (const ColorsType& type : colorsTypes) {
        SCOPED_TRACE(type.colors);
        const QByteArray colors = element(type.colors, type.start + packedColors(type.side));
        expectPicture(icns(colors), expectedPicture(type.side, true));
        const char* otherMask = type.side == 16 ? "l8mk" : "s8mk";
        expectPicture(icns(colors + element(otherMask, QByteArray(128 * 128, '\0'))),
                      expectedPicture(type.side, true));
    }
}

TEST(IcnsReader, a_mask_that_is_too_short_is_an_error_and_of_a_longer_one_the_beginning_counts) {
    for (const ColorsType& type : colorsTypes) {
        SCOPED_TRACE(type.colors);
        const QByteArray mask = plane(3, type.side);
        for (const QByteArray& colors :
             {type.start + packedColors(type.side), plainArgb(type.side)}) { // packed and plain
            const auto masked = [&](const QByteArray& data) {
                return icns(element(type.colors, colors) + element(type.mask, data));
            };
            expectPicture(masked(mask + "more"), expectedPicture(type.side, false));
            for (const QByteArray& brokenMask : {mask.chopped(1), mask.left(1), QByteArray()})
                expectError(masked(brokenMask), ErrorCode::Damaged);
        }
    }
}

TEST(IcnsReader, plain_samples_are_told_by_their_length) {
    expectPicture(icns(element("icp4", plainArgb(16))), expectedPicture(16, false));
    expectPicture(icns(element("icp5", plainArgb(32))), expectedPicture(32, false));
    expectPicture(icns(element("ic07", plainArgb(128))), expectedPicture(128, false));
    expectPicture(icns(element("is32", plainArgb(16)) + element("s8mk", plane(3, 16))),
                  expectedPicture(16, false));
}

TEST(IcnsReader, plain_samples_of_another_length_are_an_error) {
    expectError(icns(element("icp4", plainArgb(16).chopped(1))), ErrorCode::Damaged);
    expectError(icns(element("icp4", plainArgb(16) + '\0')), ErrorCode::Damaged);
    expectError(icns(element("icp4", plainArgb(8))), ErrorCode::Damaged);
    expectError(icns(element("ic07", {})), ErrorCode::Damaged);
}

TEST(IcnsReader, a_file_of_another_program_is_read_picture_by_picture) {
    const QByteArray file = fixture("packed.icns");
    const Result<IcnsReader> reader = IcnsReader::open(file);
    ASSERT_TRUE(reader);
    for (const ColorsType& type : colorsTypes) {
        SCOPED_TRACE(type.colors);
        const IcnsElement* found = reader->element(FourCharCode(qFromBigEndian<quint32>(type.colors)));
        ASSERT_NE(found, nullptr);
        const Result<DecodedPicture> picture = reader->picture(*found);
        ASSERT_TRUE(picture);
        const int step = type.side / 4;
        // The largest picture of that file has no mask.
        const QImage expected = Pictures::raster(type.side, type.side, [&](int x, int y) {
            const int column = x / step;
            const int row = y / step;
            return QColor((37 * column + 5 * row + 10) % 256, (11 * column + 53 * row + 100) % 256,
                          (71 * column + 29 * row + 200) % 256,
                          type.side == 128 ? 255 : 51 * ((column + row) % 5 + 1));
        });
        ASSERT_EQ(picture->raster.size(), expected.size());
        EXPECT_EQ(Pictures::largestDifference(picture->raster, expected), 0);
    }
}

TEST(IcnsReader, the_largest_picture_is_taken) {
    const QByteArray small = element("icp4", png(16, Qt::red)) + element("is32", packedColors(16));
    const QByteArray middle = element("ic12", png(64, Qt::green));
    const QByteArray large = element("ic08", png(256, Qt::blue));
    for (const QByteArray& elements :
         {small + middle + large, large + small + middle, middle + large + small})
        expectPicture(icns(elements), Pictures::flat(256, 256, Qt::blue));
    expectPicture(icns(small + element("it32", QByteArray(4, '\0') + packedColors(128)) + middle),
                  expectedPicture(128, true));
}

TEST(IcnsReader, unknown_elements_are_passed_over) {
    expectPicture(icns(element("TOC ", "12345678") + element("icnV", "1234") +
                       element("ic12", png(64, Qt::green)) + element("info", QByteArray(1000, 'x'))),
                  Pictures::flat(64, 64, Qt::green));
}

TEST(IcnsReader, an_element_without_a_picture_is_not_supported) {
    const QByteArray file = icns(element("s8mk", plane(3, 16)) + element("TOC ", "12345678"));
    const Result<IcnsReader> reader = IcnsReader::open(file);
    ASSERT_TRUE(reader);
    for (const IcnsElement& found : reader->elements()) {
        const Result<DecodedPicture> picture = reader->picture(found);
        ASSERT_FALSE(picture);
        EXPECT_EQ(picture.error().code, ErrorCode::Unsupported);
    }
    expectError(file, ErrorCode::Unsupported);
}

TEST(IcnsReader, a_file_without_elements_has_no_picture) {
    expectError(icns({}), ErrorCode::Unsupported);
}

TEST(IcnsReader, what_follows_the_files_length_is_passed_over) {
    expectPicture(icns(element("ic12", png(64, Qt::green))) + "more", Pictures::flat(64, 64, Qt::green));
}

// Hostile files.

TEST(IcnsReader, fewer_bytes_than_a_header_are_an_error) {
    const QByteArray header = icns({});
    ASSERT_EQ(header.size(), 8);
    eachBeginning(header, [](const QByteArray& bytes) {
        const Result<IcnsReader> reader = IcnsReader::open(bytes);
        ASSERT_FALSE(reader);
        EXPECT_EQ(reader.error().code, ErrorCode::Damaged);
    });
}

TEST(IcnsReader, another_beginning_is_an_error) {
    EXPECT_FALSE(IcnsReader::open(element("ICNS", {})));
}

TEST(IcnsReader, a_length_of_the_file_that_cannot_be_is_an_error) {
    const QByteArray elements = element("ic12", png(64, Qt::green));
    const auto actual = static_cast<quint32>(elements.size() + 8);
    for (const quint32 total : {0U, 1U, 7U, actual + 1, 0x7fffffffU, 0x80000000U, 0xffffffffU})
        expectError("icns" + number(total) + elements, ErrorCode::Damaged);
}

TEST(IcnsReader, a_length_of_an_element_that_cannot_be_is_an_error) {
    const QByteArray data = png(64, Qt::green);
    const auto actual = static_cast<quint32>(data.size() + 8);
    for (const quint32 length :
         {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U, actual + 1, actual + 0x80000000U, 0xffffffffU})
        expectError(icns("ic12" + number(length) + data), ErrorCode::Damaged);
}

TEST(IcnsReader, an_element_header_that_breaks_off_is_an_error) {
    const QByteArray whole = element("ic12", png(64, Qt::green));
    for (qsizetype length = 1; length < 8; ++length)
        expectError(icns(whole + element("zzzz", {}).left(length)), ErrorCode::Damaged);
}

TEST(IcnsReader, a_file_cut_off_at_any_byte_is_an_error) {
    expectNeedsEveryByte(icns(element("icp4", png(16, Qt::red)) + element("is32", packedColors(16))));
}

TEST(IcnsReader, packed_samples_that_break_off_are_an_error) {
    for (const ColorsType& type : colorsTypes) {
        const QByteArray packed = type.start + packedColors(type.side);
        for (const qsizetype missing :
             {qsizetype{1}, qsizetype{100}, packed.size() / 2, packed.size() - 1, packed.size()})
            expectError(icns(element(type.colors, packed.chopped(missing))), ErrorCode::Damaged);
    }
    const QByteArray argb = "ARGB" + literals(plane(3, 16)) + packedColors(16);
    for (const qsizetype missing : {qsizetype{1}, qsizetype{200}, argb.size() - 4})
        expectError(icns(element("ic04", argb.chopped(missing))), ErrorCode::Damaged);
}

TEST(IcnsReader, a_run_without_its_value_is_an_error) {
    const QByteArray packed = runs(1, 256) + runs(2, 256) + runs(3, 256);
    expectPicture(icns(element("is32", packed)), Pictures::flat(16, 16, QColor(1, 2, 3)));
    expectError(icns(element("is32", packed.chopped(1))), ErrorCode::Damaged);
}

TEST(IcnsReader, a_run_or_literal_past_the_end_of_its_plane_is_an_error) {
    const QByteArray others = runs(2, 256) + runs(3, 256);
    // 250 samples, then a run of 7 or a literal of 7 where 6 are left.
    const QByteArray start = runs(1, 250);
    const QByteArray six = QByteArray("\x83\x01", 2);
    expectPicture(icns(element("is32", start + six + others)), Pictures::flat(16, 16, QColor(1, 2, 3)));
    expectError(icns(element("is32", start + QByteArray("\x84\x01", 2) + others)), ErrorCode::Damaged);
    expectError(icns(element("is32", start + QByteArray("\x06\x01\x01\x01\x01\x01\x01\x01", 8) + others)),
                ErrorCode::Damaged);
}

TEST(IcnsReader, large_packed_colours_without_their_four_bytes_are_an_error) {
    expectError(icns(element("it32", packedColors(128))), ErrorCode::Damaged);
    for (qsizetype length = 0; length <= 4; ++length)
        expectError(icns(element("it32", QByteArray(length, '\0'))), ErrorCode::Damaged);
}

TEST(IcnsReader, an_element_of_no_known_kind_is_an_error) {
    expectError(icns(element("ic08", "This is no picture.")), ErrorCode::Damaged);
    expectError(icns(element("ic08", fixture("rgb.jpg"))), ErrorCode::Damaged);
}

TEST(IcnsReader, an_icns_file_in_an_icns_file_is_an_error) {
    expectError(icns(element("ic08", icns(element("ic12", png(64, Qt::green))))), ErrorCode::Damaged);
}

TEST(IcnsReader, a_png_element_beyond_the_limit_is_refused) {
    QByteArray picture = png(16, Qt::red);
    // The header's check sum is wrong now, too. But the size is checked first.
    picture.replace(16, 8, number(0x7fffffff) + number(0x7fffffff));
    EXPECT_FALSE(ImageSource::decode(icns(element("ic10", picture))));
}

TEST(IcnsReader, hundreds_of_thousands_of_empty_elements_are_read_fast) {
    const QByteArray file = icns(element("zzzz", {}).repeated(400000) + element("ic12", png(64, Qt::green)));
    QElapsedTimer timer;
    timer.start();
    expectPicture(file, Pictures::flat(64, 64, Qt::green));
    const QByteArray empty = icns(element("ic12", {}).repeated(400000));
    expectError(empty, ErrorCode::Damaged);
    EXPECT_LT(timer.elapsed(), 2000 * slowness);
}

TEST(IcnsReader, noise_never_crashes) {
    std::mt19937 random(3);
    const QByteArray whole = icns(element("ic04", "ARGB" + literals(plane(3, 16)) + packedColors(16)) +
                                  element("is32", packedColors(16)) + element("s8mk", plane(3, 16)));
    int readable = 0;
    for (int round = 0; round < 5000; ++round) {
        QByteArray file = whole;
        for (int i = 0; i < 3; ++i)
            file[static_cast<qsizetype>(random() % static_cast<quint32>(file.size()))] =
                static_cast<char>(random() & 0xff);
        const Result<DecodedPicture> picture = ImageSource::decode(file);
        if (picture) {
            ++readable;
            EXPECT_FALSE(picture->raster.isNull());
        } else {
            EXPECT_FALSE(picture.error().sentence.isEmpty());
        }
    }
    EXPECT_GT(readable, 0);
    EXPECT_LT(readable, 5000);
}
