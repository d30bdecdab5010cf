#include "imaging/io/ImageSource.h"
#include "tests/support/Fixtures.h"
#include "tests/support/Pictures.h"
#include "tests/support/Refusals.h"

#include <QFile>
#include <QtEndian>

#include <gtest/gtest.h>

#include <functional>
using Fixtures::expectPicture;
using Fixtures::height;
using Fixtures::paletteColor;
using Fixtures::width;
using Refusals::expectAtOnce;
using Refusals::expectError;
using Refusals::expectNeedsEveryByte;

namespace {

int paletteIndex(int x, int y) {
    return (5 * x + 3 * y) % 16;
}
QColor gifColor(int x, int y) {
    return paletteColor(paletteIndex(x, y));
}

constexpr qsizetype headerSize = 13;
constexpr qsizetype colorTableSize = qsizetype{3} * 16;
/// Where the first frame's descriptor begins: after the header, the colours and the frame's control block.
constexpr qsizetype frameStart = headerSize + colorTableSize + 8;

} // namespace

TEST(ImageSourceGif, a_picture_is_read_exactly) {
    expectPicture(fixture("plain.gif"), gifColor);
}

TEST(ImageSourceGif, both_versions_are_read) {
    expectPicture(fixture("plain.gif").replace(0, 6, "GIF87a"), gifColor);
}

TEST(ImageSourceGif, an_interlaced_picture_is_read_exactly) {
    expectPicture(fixture("interlaced.gif"), gifColor, 11, 19);
}

TEST(ImageSourceGif, the_transparent_colour_is_transparent) {
    expectPicture(fixture("transparent.gif"),
                  [](int x, int y) { return paletteIndex(x, y) == 3 ? QColor(0, 0, 0, 0) : gifColor(x, y); });
}

TEST(ImageSourceGif, a_frames_own_colours_go_before_the_files) {
    expectPicture(fixture("local-colors.gif"),
                  [](int x, int y) { return paletteColor(15 - paletteIndex(x, y)); });
}

TEST(ImageSourceGif, an_animation_is_its_first_frame_with_a_warning) {
    expectPicture(fixture("animated.gif"), gifColor, width, height, {PictureReader::framesWarning()});
}

TEST(ImageSourceGif, a_frame_smaller_than_the_canvas_lies_where_it_says) {
    expectPicture(fixture("small-frame.gif"), [](int x, int y) {
        const bool isInside = x >= 3 && x < 8 && y >= 2 && y < 6;
        return isInside ? gifColor(x - 3, y - 2) : QColor(0, 0, 0, 0);
    });
}

TEST(ImageSourceGif, a_frame_that_reaches_past_the_canvas_enlarges_it) {
    QByteArray gif = fixture("small-frame.gif");
    qToLittleEndian<quint16>(4, gif.data() + 6);
    qToLittleEndian<quint16>(3, gif.data() + 8);
    expectPicture(
        gif, [](int x, int y) { return x >= 3 && y >= 2 ? gifColor(x - 3, y - 2) : QColor(0, 0, 0, 0); }, 8,
        6);
}

TEST(ImageSourceGif, a_file_cut_off_within_its_first_frame_is_an_error) {
    for (const char* name : {"plain.gif", "interlaced.gif", "local-colors.gif", "small-frame.gif"}) {
        SCOPED_TRACE(name);
        // The last two bytes, after the frame, mark the end of its blocks and the end of the file.
        expectNeedsEveryByte(fixture(name), 2);
    }
}

TEST(ImageSourceGif, a_colour_that_the_table_does_not_have_is_an_error) {
    QByteArray gif = fixture("plain.gif");
    gif[10] = static_cast<char>(0xf0); // a table of two colours: the others are removed
    EXPECT_FALSE(ImageSource::decode(gif.remove(headerSize + 6, colorTableSize - 6)));
}

TEST(ImageSourceGif, a_frame_without_colours_is_an_error) {
    QByteArray gif = fixture("plain.gif");
    gif[10] = 0x70;
    gif.remove(headerSize, colorTableSize);
    const Result<DecodedPicture> picture = ImageSource::decode(gif);
    ASSERT_FALSE(picture);
    EXPECT_EQ(picture.error().code, ErrorCode::Damaged);
}

TEST(ImageSourceGif, a_file_without_a_frame_is_an_error) {
    EXPECT_FALSE(ImageSource::decode(fixture("plain.gif").left(headerSize + colorTableSize) + ";"));
}

TEST(ImageSourceGif, a_frame_without_pixels_is_an_error) {
    QByteArray gif = fixture("plain.gif");
    ASSERT_EQ(gif[frameStart], '\x2c');
    qToLittleEndian<quint16>(0, gif.data() + frameStart + 5);
    EXPECT_FALSE(ImageSource::decode(gif));
}

TEST(ImageSourceGif, a_canvas_or_frame_beyond_the_limit_is_refused_at_once) {
    expectAtOnce([] {
        for (const qsizetype at : {qsizetype{6}, frameStart + 5}) {
            SCOPED_TRACE(at);
            QByteArray gif = fixture("plain.gif");
            qToLittleEndian<quint32>(0xffffffff, gif.data() + at);
            expectError(gif, ErrorCode::TooLarge);
        }
    });
}

TEST(ImageSourceGif, a_colour_outside_the_table_is_allowed_where_it_is_the_transparent_one) {
    // One pixel of index 3, with a table of two colours.
    const auto gif = [](char hasTransparency) {
        return QByteArray("GIF89a\x01\0\x01\0\x80\0\0\x10\x20\x30\x40\x50\x60\x21\xf9\x04", 22) +
               hasTransparency + QByteArray("\0\0\x03\0\x2c\0\0\0\0\x01\0\x01\0\0\x02\x02\x5c\x01\0\x3b", 20);
    };
    const Result<DecodedPicture> picture = ImageSource::decode(gif('\x01'));
    ASSERT_TRUE(picture) << picture.error().sentence.toStdString();
    EXPECT_EQ(Pictures::pixel(picture->raster, 0, 0), (Pictures::Pixel{0, 0, 0, 0}));
    EXPECT_FALSE(ImageSource::decode(gif('\0')));
}
