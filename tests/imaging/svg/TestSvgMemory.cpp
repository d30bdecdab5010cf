#include "imaging/svg/SvgMemory.h"
#include "tests/support/Pictures.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <limits>

using SvgPipe::Request;

namespace {

Request drawing(int width, int height) {
    return {width, height, {}};
}

} // namespace

TEST(SvgMemory, the_document_is_at_its_begin) {
    const QByteArray document = "<svg/>";
    const SvgMemory memory(document);
    ASSERT_TRUE(memory.isOpen());
    EXPECT_EQ(memory.documentBytes(), 6U);
    std::array<char, 6> bytes{};
    EXPECT_EQ(::pread(memory.descriptor(), bytes.data(), bytes.size(), 0), 6);
    EXPECT_EQ(QByteArrayView(bytes.data(), 6), document);
}

TEST(SvgMemory, an_empty_document_has_memory_too) {
    const SvgMemory memory({});
    ASSERT_TRUE(memory.isOpen());
    EXPECT_GT(::lseek(memory.descriptor(), 0, SEEK_END), 0);
}

TEST(SvgMemory, places_lie_apart_and_behind_the_document) {
    const QByteArray document(200000, ' ');
    SvgMemory memory(document);
    std::uint64_t end = memory.documentBytes();
    for (const int side : {1, 128, 300, 16}) {
        Request request = drawing(side, side);
        ASSERT_TRUE(memory.take(request));
        EXPECT_EQ(request.place % SvgPipe::placeBytes, 0U);
        EXPECT_GE(request.place, end);
        end = request.place + request.bytes();
        EXPECT_GE(::lseek(memory.descriptor(), 0, SEEK_END), static_cast<off_t>(end));
    }
}

TEST(SvgMemory, a_free_place_is_taken_again_where_it_suffices) {
    SvgMemory memory("<svg/>");
    Request first = drawing(200, 200);
    Request second = drawing(9, 9);
    ASSERT_TRUE(memory.take(first) && memory.take(second));
    memory.giveBack(first);
    Request larger = drawing(300, 300);
    Request smaller = drawing(16, 16);
    ASSERT_TRUE(memory.take(larger) && memory.take(smaller));
    EXPECT_GT(larger.place, second.place);
    EXPECT_EQ(smaller.place, first.place);
}

TEST(SvgMemory, a_drawing_is_a_copy_with_its_colours_in_their_order) {
    SvgMemory memory("<svg/>");
    Request request = drawing(2, 1);
    ASSERT_TRUE(memory.take(request));
    const std::array<quint32, 2> words{0xff123456, 0x33000033}; // alpha, red, green, blue
    ASSERT_EQ(::pwrite(memory.descriptor(), words.data(), sizeof words, static_cast<off_t>(request.place)),
              ssize_t{sizeof words});
    const Result<QImage> raster = memory.image(request);
    ASSERT_TRUE(raster);
    ASSERT_EQ(::pwrite(memory.descriptor(), "........", 8, static_cast<off_t>(request.place)), 8);
    EXPECT_EQ(Pictures::pixel(*raster, 0, 0), (Pictures::Pixel{0x12, 0x34, 0x56, 0xff}));
    EXPECT_EQ(Pictures::pixel(*raster, 1, 0), (Pictures::Pixel{0, 0, 0x33, 0x33}));
}

TEST(SvgMemory, memory_that_there_is_not_is_an_error) {
    SvgMemory memory("<svg/>");
    Request enormous = drawing(std::numeric_limits<int>::max(), std::numeric_limits<int>::max());
    EXPECT_TRUE(!memory.take(enormous) || !memory.image(enormous));
    Request usual = drawing(9, 9);
    EXPECT_TRUE(memory.take(usual));
}

TEST(SvgMemory, its_descriptor_is_not_inherited_and_closed_with_it) {
    int number = -1;
    {
        const SvgMemory memory("<svg/>");
        number = memory.descriptor();
        EXPECT_EQ(::fcntl(number, F_GETFD), FD_CLOEXEC);
    }
    EXPECT_LT(::fcntl(number, F_GETFD), 0);
}

#ifdef __linux__
TEST(SvgMemory, the_other_side_can_not_make_it_shorter) {
    const SvgMemory memory("<svg/>");
    EXPECT_NE(::ftruncate(memory.descriptor(), 1), 0);
}
#endif
