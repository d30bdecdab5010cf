#include "imaging/png/PngHeader.h"
#include "imaging/png/PngWriter.h"
#include "tests/support/BigEndian.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

namespace {

/// The first bytes of a file, up to its width and height.
QByteArray start(quint32 width, quint32 height, const QByteArray& type = "IHDR", quint32 length = 13) {
    return QByteArray("\x89PNG\r\n\x1a\n", 8) + big(length) + type + big(width) + big(height);
}

} // namespace

TEST(PngHeader, a_file_tells_its_size) {
    EXPECT_EQ(PngHeader::size(*encodePng(Pictures::flat(7, 13, QColor(1, 2, 3)))), QSize(7, 13));
    EXPECT_EQ(PngHeader::size(start(1, 1)), QSize(1, 1));
    EXPECT_EQ(PngHeader::size(start(0, 0)), QSize(0, 0));
}

TEST(PngHeader, sizes_up_to_the_format_s_largest_number_are_told) {
    EXPECT_EQ(PngHeader::size(start(0x7fffffff, 1)), QSize(0x7fffffff, 1));
    EXPECT_EQ(PngHeader::size(start(1, 0x7fffffff)), QSize(1, 0x7fffffff));
    EXPECT_EQ(PngHeader::size(start(0x80000000, 1)), std::nullopt);
    EXPECT_EQ(PngHeader::size(start(1, 0x80000000)), std::nullopt);
    EXPECT_EQ(PngHeader::size(start(0xffffffff, 0xffffffff)), std::nullopt);
}

TEST(PngHeader, a_file_that_breaks_off_tells_no_size) {
    const QByteArray file = start(16, 16);
    for (qsizetype size = 0; size < file.size(); ++size)
        EXPECT_EQ(PngHeader::size(file.first(size)), std::nullopt) << size;
}

TEST(PngHeader, no_other_chunk_tells_the_size) {
    EXPECT_EQ(PngHeader::size(start(16, 16, "prVt")), std::nullopt);
    EXPECT_EQ(PngHeader::size(start(16, 16, "iHDR")), std::nullopt);
    EXPECT_EQ(PngHeader::size(start(16, 16, "IHDR", 8)), std::nullopt);
    EXPECT_EQ(PngHeader::size(start(16, 16).replace(1, 3, "png")), std::nullopt);
}
