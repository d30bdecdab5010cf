#include "iconfamily/IconFamily.h"
#include "tests/support/RecordingLog.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

/// A square bitmap of `size` pixels a side in that shape. Rows are `padding` bytes longer than needed, filled
/// with 0xEE. `byteAt` gives byte `i` of pixel (x, y).
std::unique_ptr<BitmapImageRep> bitmap(int size, int samples, int bitsPerPixel, int padding = 0,
                                       const std::function<int(int x, int y, int i)>& byteAt = {}) {
    BitmapLayout layout;
    layout.pixelsWide = size;
    layout.pixelsHigh = size;
    layout.samplesPerPixel = samples;
    layout.bitsPerPixel = bitsPerPixel;
    layout.bitsPerSample = bitsPerPixel == 1 ? 1 : 8;
    layout.hasAlpha = samples == 4;
    const int bytes = bitsPerPixel / 8;
    layout.bytesPerRow = (size * bitsPerPixel + 7) / 8 + padding;
    QByteArray data(layout.bytesPerRow * size, '\xee');
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            for (int i = 0; i < bytes; ++i)
                data[y * layout.bytesPerRow + x * bytes + i] =
                    static_cast<char>(byteAt ? byteAt(x, y, i) : (7 * x + 13 * y + 50 * i) % 256);
        }
    }
    return BitmapImageRep::initWithBitmapData(layout, data).valueOr(nullptr);
}

std::unique_ptr<BitmapImageRep> shaped(const std::function<void(BitmapLayout&)>& change) {
    BitmapLayout layout;
    layout.pixelsWide = 16;
    layout.pixelsHigh = 16;
    change(layout);
    return BitmapImageRep::initWithBitmapData(layout).valueOr(nullptr);
}

using Conversion = std::optional<QByteArray> (*)(const BitmapImageRep&, qint32);
constexpr Conversion data32 = &IconFamily::get32BitDataFromBitmapImageRep;
constexpr Conversion data8 = &IconFamily::get8BitDataFromBitmapImageRep;
constexpr Conversion mask8 = &IconFamily::get8BitMaskFromBitmapImageRep;
constexpr Conversion mask1 = &IconFamily::get1BitMaskFromBitmapImageRep;

TEST(SampleConversion, another_size_has_no_result_and_no_word_before_any_other_check) {
    const RecordingLog log;
    const auto planar = shaped([](BitmapLayout& layout) { layout.isPlanar = true; });
    for (const Conversion convert : {data32, data8, mask8, mask1}) {
        EXPECT_FALSE(convert(*bitmap(32, 4, 32), 16));
        EXPECT_FALSE(convert(*planar, 32));
        EXPECT_FALSE(convert(*planar, 0));
        EXPECT_FALSE(convert(*planar, -16));
    }
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST(SampleConversion, wide_and_high_must_both_be_right) {
    const RecordingLog log;
    const auto low = shaped([](BitmapLayout& layout) { layout.pixelsHigh = 15; });
    const auto narrow = shaped([](BitmapLayout& layout) { layout.pixelsWide = 15; });
    for (const Conversion convert : {data32, data8, mask8, mask1}) {
        for (const int size : {15, 16}) {
            EXPECT_FALSE(convert(*low, size));
            EXPECT_FALSE(convert(*narrow, size));
        }
    }
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST(SampleConversion, shapes_that_are_nearly_right_are_refused) {
    struct Shape {
        int bitsPerPixel;
        int samples;
        int depth;
    };
    const Shape shapes[] = {{8, 1, 4},  {8, 2, 4},  {24, 3, 4}, {24, 4, 4}, {32, 4, 4}, {32, 3, 8},
                            {40, 4, 8}, {16, 1, 8}, {32, 1, 8}, {8, 1, 1},  {24, 1, 8}, {16, 2, 8}};
    const RecordingLog log;
    for (const Shape& shape : shapes) {
        const auto refused = shaped([&](BitmapLayout& layout) {
            layout.bitsPerPixel = shape.bitsPerPixel;
            layout.samplesPerPixel = shape.samples;
            layout.bitsPerSample = shape.depth;
            layout.hasAlpha = false;
        });
        ASSERT_NE(refused, nullptr);
        for (const Conversion convert : {data32, data8, mask8, mask1})
            EXPECT_FALSE(convert(*refused, 16));
        EXPECT_EQ(log.lines().last(),
                  QStringLiteral("get1BitMaskFromBitmapImageRep:requiredPixelSize: returning NULL due to "
                                 "bitsPerPixel == %1, samplesPerPixel== %2, bitsPerSample == %3")
                      .arg(shape.bitsPerPixel)
                      .arg(shape.samples)
                      .arg(shape.depth));
    }
    EXPECT_EQ(log.lines().size(), 4 * 12);
}

TEST(SampleConversion, pixels_of_24_bits_come_out_as_green_red_255_blue_in_rows_of_any_length) {
    const std::optional<QByteArray> converted = data32(*bitmap(16, 3, 24, 5), 16);
    ASSERT_TRUE(converted);
    QByteArray expected;
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 16; ++x) {
            const auto byteAt = [&](int i) { return static_cast<char>((7 * x + 13 * y + 50 * i) % 256); };
            expected += QByteArray{}.append(byteAt(1)).append(byteAt(0)).append('\xff').append(byteAt(2));
        }
    }
    EXPECT_EQ(*converted, expected);
}

TEST(SampleConversion, refusals_say_why_in_these_words) {
    const RecordingLog log;
    // Planar is checked before the depth, and the depth before the shape.
    const auto planar = shaped([](BitmapLayout& layout) {
        layout.isPlanar = true;
        layout.bitsPerSample = 16;
    });
    const auto deep = shaped([](BitmapLayout& layout) { layout.bitsPerSample = 16; });
    const auto greyAlpha = shaped([](BitmapLayout& layout) { layout.samplesPerPixel = 2; });
    for (const auto* refused : {&planar, &deep, &greyAlpha}) {
        for (const Conversion convert : {data32, data8, mask8, mask1})
            EXPECT_FALSE(convert(**refused, 16));
    }
    const QStringList expected{
        QStringLiteral(
            "get32BitDataFromBitmapImageRep:requiredPixelSize: returning NULL due to isPlanar == YES"),
        QStringLiteral(
            "get8BitDataFromBitmapImageRep:requiredPixelSize: returning NULL due to isPlanar == YES"),
        QStringLiteral(
            "get8BitMaskFromBitmapImageRep:requiredPixelSize: returning NULL due to isPlanar == YES"),
        QStringLiteral(
            "get1BitMaskFromBitmapImageRep:requiredPixelSize: returning NULL due to isPlanar == YES"),
        QStringLiteral(
            "get32BitDataFromBitmapImageRep:requiredPixelSize: returning NULL due to bitsPerSample == 16"),
        QStringLiteral(
            "get8BitDataFromBitmapImageRep:requiredPixelSize: returning NULL due to bitsPerSample == 16"),
        QStringLiteral(
            "get8BitMaskFromBitmapImageRep:requiredPixelSize: returning NULL due to bitsPerSample == 16"),
        QStringLiteral(
            "get1BitMaskFromBitmapImageRep:requiredPixelSize: returning NULL due to bitsPerPixel == 64, "
            "samplesPerPixel== 4, bitsPerSample == 16"),
        QStringLiteral(
            "get32BitDataFromBitmapImageRep:requiredPixelSize: returning NULL due to samplesPerPixel == 2, "
            "bitsPerPixel == 16"),
        QStringLiteral(
            "get8BitDataFromBitmapImageRep:requiredPixelSize: returning NULL due to samplesPerPixel == 2, "
            "bitsPerPixel == 16"),
        QStringLiteral(
            "get8BitMaskFromBitmapImageRep:requiredPixelSize: returning NULL due to samplesPerPixel == 2, "
            "bitsPerPixel == 16"),
        QStringLiteral(
            "get1BitMaskFromBitmapImageRep:requiredPixelSize: returning NULL due to bitsPerPixel == 16, "
            "samplesPerPixel== 2, bitsPerSample == 8")};
    EXPECT_EQ(log.lines(), expected);
}

TEST(SampleConversion, three_samples_in_32_bits_are_refused_by_all) {
    const RecordingLog log;
    const auto padded = shaped([](BitmapLayout& layout) {
        layout.samplesPerPixel = 3;
        layout.hasAlpha = false;
        layout.bitsPerPixel = 32;
    });
    for (const Conversion convert : {data32, data8, mask8, mask1})
        EXPECT_FALSE(convert(*padded, 16));
    EXPECT_EQ(log.lines().size(), 4);
}

TEST(SampleConversion, grey_is_taken_by_the_masks_alone) {
    const RecordingLog log;
    const auto grey = bitmap(16, 1, 8, 3);
    EXPECT_FALSE(data32(*grey, 16));
    EXPECT_FALSE(data8(*grey, 16));
    EXPECT_EQ(log.lines().size(), 2);
    const std::optional<QByteArray> mask = mask8(*grey, 16);
    ASSERT_TRUE(mask);
    ASSERT_EQ(mask->size(), 256);
    EXPECT_EQ(static_cast<uchar>(mask->at(16 * 2 + 3)), 7 * 3 + 13 * 2) << "rows without their padding";
    EXPECT_TRUE(mask1(*grey, 16));
    EXPECT_EQ(log.lines().size(), 2);
}

/// A bitmap with a raster image that the test chooses.
class RasterBitmap final : public BitmapImageRep {
  public:
    RasterBitmap(const BitmapLayout& layout, RasterImage image)
        : BitmapImageRep(layout, QByteArray(layout.byteCount(), '\x55')), m_image(std::move(image)) {}
    Result<RasterImage> CGImage() const override { return m_image; }

  private:
    RasterImage m_image;
};

/// The first converted pixel of a raster image with these bytes.
QByteArray firstPixel(AlphaInfo info, const QByteArray& bytes, int bitsPerPixel = 32) {
    BitmapLayout layout;
    layout.pixelsWide = 1;
    layout.pixelsHigh = 1;
    layout.bitsPerPixel = bitsPerPixel;
    layout.samplesPerPixel = bitsPerPixel / 8;
    layout.bytesPerRow = bitsPerPixel / 8;
    return data32(RasterBitmap(layout, {1, 1, info, bytes}), 1).value_or(QByteArray());
}

TEST(SampleConversion, the_alpha_info_chooses_the_order_and_whether_alpha_is_divided_out) {
    const QByteArray bytes("\x0a\x14\x1e\x28", 4);
    EXPECT_EQ(firstPixel(AlphaInfo::First, bytes), QByteArray("\x28\x1e\x14\x0a", 4));
    for (const AlphaInfo info :
         {AlphaInfo::None, AlphaInfo::Last, AlphaInfo::NoneSkipLast, AlphaInfo::NoneSkipFirst})
        EXPECT_EQ(firstPixel(info, bytes), QByteArray("\x0a\x28\x1e\x14", 4)) << static_cast<int>(info);
    const QByteArray expected("\x80\xc7\x64\x32", 4); // 128, 199, 100, 50
    EXPECT_EQ(firstPixel(AlphaInfo::PremultipliedLast, QByteArray("\x80\x19\x32\x64", 4)), expected);
    EXPECT_EQ(firstPixel(AlphaInfo::PremultipliedFirst, QByteArray("\x19\x32\x64\x80", 4)), expected);
    EXPECT_EQ(firstPixel(AlphaInfo::PremultipliedFirst, QByteArray("\x19\x32\x64\x00", 4)),
              QByteArray(4, '\0'));
    EXPECT_EQ(firstPixel(AlphaInfo::PremultipliedFirst, QByteArray("\xff\x32\x64\x01", 4)),
              QByteArray("\x01\xff\xff\xff", 4));
}

TEST(SampleConversion, all_alphas_and_colours_are_divided_with_rounding) {
    for (int a = 0; a < 256; ++a) {
        for (int c = 0; c < 256; ++c) {
            const QByteArray pixel{QByteArray(1, static_cast<char>(c)) + QByteArray(2, '\0') +
                                   QByteArray(1, static_cast<char>(a))};
            const int expected = a == 0 ? 0 : std::min(255, (c * 255 + a / 2) / a);
            ASSERT_EQ(static_cast<uchar>(firstPixel(AlphaInfo::PremultipliedFirst, pixel)[3]), expected)
                << c << " / " << a;
        }
    }
}

TEST(SampleConversion, colours_of_24_bits_come_out_in_an_order_of_their_own) {
    // R, G, B become 255, R, G, B; these are then reordered to G, R, 255, B.
    EXPECT_EQ(firstPixel(AlphaInfo::None, QByteArray("\x0a\x14\x1e", 3), 24),
              QByteArray("\x14\x0a\xff\x1e", 4));
}

TEST(SampleConversion,
     an_image_of_fewer_or_more_bytes_than_its_pixels_is_never_read_or_written_past_its_end) {
    EXPECT_EQ(firstPixel(AlphaInfo::First, QByteArray("\x0a", 1)), QByteArray("\0\0\0\x0a", 4));
    EXPECT_EQ(firstPixel(AlphaInfo::First, QByteArray(1000, '\x07')), QByteArray(4, '\x07'));
}

TEST(SampleConversion, a_bitmaps_own_image_has_its_words_in_little_endian_order) {
    const auto last = bitmap(16, 4, 32, 4, [](int x, int, int i) { return i == 3 ? 255 : 10 * i + x; });
    const RasterImage image = *last->CGImage();
    EXPECT_EQ(image.alphaInfo, AlphaInfo::PremultipliedLast);
    EXPECT_EQ(image.bytes.size(), 1024) << "packed";
    EXPECT_EQ(image.bytes.mid(4, 4), QByteArray("\xff\x15\x0b\x01", 4));
    const std::optional<QByteArray> out = data32(*last, 16);
    ASSERT_TRUE(out);
    EXPECT_EQ(out->mid(4, 4), QByteArray("\xff\x01\x0b\x15", 4));
    const auto rgb = bitmap(16, 3, 24);
    EXPECT_EQ(rgb->CGImage()->alphaInfo, AlphaInfo::None);
    EXPECT_EQ(rgb->CGImage()->bytes.first(3), rgb->bitmapData().first(3).toByteArray());
}

TEST(SampleConversion, eight_bit_data_is_the_last_byte_of_each_pixel) {
    for (const int bytes : {3, 4}) {
        const auto source = bitmap(16, bytes, 8 * bytes, 5);
        const std::optional<QByteArray> out = data8(*source, 16);
        ASSERT_TRUE(out);
        ASSERT_EQ(out->size(), 256);
        for (int y = 0; y < 16; ++y) {
            for (int x = 0; x < 16; ++x)
                ASSERT_EQ(static_cast<uchar>(out->at(16 * y + x)), (7 * x + 13 * y + 50 * (bytes - 1)) % 256);
        }
    }
}

TEST(SampleConversion, eight_bit_mask_is_the_fourth_byte_or_opaque) {
    const std::optional<QByteArray> fourth = mask8(*bitmap(16, 4, 32, 5), 16);
    ASSERT_TRUE(fourth);
    EXPECT_EQ(static_cast<uchar>(fourth->at(16 * 3 + 2)), 7 * 2 + 13 * 3 + 150);
    EXPECT_EQ(mask8(*bitmap(16, 3, 24), 16), QByteArray(256, '\xff'));
}

TEST(SampleConversion, one_bit_mask_tests_the_first_byte_and_comes_twice) {
    // Only pixel (9, 2) has a first byte other than 0; every fourth byte is 255.
    const auto source = bitmap(16, 4, 32, 5, [](int x, int y, int i) {
        return i == 3 ? 255 : i == 0 && x == 9 && y == 2 ? 1 : 0;
    });
    const std::optional<QByteArray> out = mask1(*source, 16);
    ASSERT_TRUE(out);
    QByteArray half(32, '\0');
    half[2 * 2 + 1] = 64;
    EXPECT_EQ(*out, half + half);
    EXPECT_EQ(mask8(*source, 16), QByteArray(256, '\xff'));
    const auto grey = bitmap(16, 1, 8, 1, [](int x, int y, int) { return x == 0 && y == 15 ? 255 : 0; });
    QByteArray greyHalf(32, '\0');
    greyHalf[30] = static_cast<char>(128);
    EXPECT_EQ(mask1(*grey, 16), greyHalf + greyHalf);
    EXPECT_EQ(mask1(*bitmap(16, 3, 24), 16), QByteArray(64, '\xff'));
    EXPECT_EQ(mask1(*bitmap(48, 3, 24), 48)->size(), 576);
}

TEST(SampleConversion, one_bit_rows_are_copied) {
    BitmapLayout layout;
    layout.pixelsWide = 16;
    layout.pixelsHigh = 16;
    layout.bitsPerSample = 1;
    layout.samplesPerPixel = 1;
    layout.hasAlpha = false;
    layout.bytesPerRow = 3;
    QByteArray data(48, '\xee');
    for (int y = 0; y < 16; ++y) {
        data[3 * y] = static_cast<char>(y);
        data[3 * y + 1] = static_cast<char>(200 + y);
    }
    const std::optional<QByteArray> out = mask1(**BitmapImageRep::initWithBitmapData(layout, data), 16);
    ASSERT_TRUE(out);
    ASSERT_EQ(out->size(), 64);
    for (int y = 0; y < 16; ++y) {
        EXPECT_EQ(static_cast<uchar>(out->at(2 * y)), y);
        EXPECT_EQ(static_cast<uchar>(out->at(2 * y + 1)), 200 + y);
    }
    EXPECT_EQ(out->first(32), out->last(32));
}

TEST(SampleConversion, one_bit_mask_of_a_width_that_fills_no_bytes_has_no_result) {
    const RecordingLog log;
    EXPECT_FALSE(mask1(*bitmap(12, 4, 32), 12));
    EXPECT_TRUE(log.lines().isEmpty());
}

} // namespace
