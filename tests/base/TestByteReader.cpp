#include "base/ByteReader.h"

#include <QByteArray>

#include <gtest/gtest.h>

#include <limits>

namespace {

const QByteArray nine("\x81\x02\x83\x04\x85\x06\x87\x08\x89", 9);

constexpr quint64 beyondSigned = quint64{1} << 63U;
constexpr qsizetype largest = std::numeric_limits<qsizetype>::max();

/// Offsets and lengths that lie outside of nine bytes. Some of them wrap around in an unchecked sum.
const ByteCount unreachable[] = {10,
                                 -1,
                                 qint64{1} << 31,
                                 -(qint64{1} << 31),
                                 std::numeric_limits<int>::max(),
                                 std::numeric_limits<int>::min(),
                                 quint32{1} << 31U,
                                 std::numeric_limits<quint32>::max(),
                                 qint64{1} << 32,
                                 (qint64{1} << 32) + 1,
                                 largest - 8,
                                 largest,
                                 std::numeric_limits<qsizetype>::min(),
                                 beyondSigned,
                                 beyondSigned + 1,
                                 std::numeric_limits<quint64>::max() - 7,
                                 std::numeric_limits<quint64>::max()};

struct Pair {
    quint16_be first;
    quint16_le second;
};
static_assert(sizeof(Pair) == 4);

} // namespace

TEST(ByteCount, a_number_of_any_type_is_what_it_is) {
    EXPECT_EQ(ByteCount(0).value(), 0);
    EXPECT_EQ(ByteCount(quint8{255}).value(), 255);
    EXPECT_EQ(ByteCount(qint64{1} << 31).value(), qsizetype{1} << 31);
    EXPECT_EQ(ByteCount(std::numeric_limits<quint32>::max()).value(), 0xffffffff);
    EXPECT_EQ(ByteCount(quint64{1} << 32U).value(), qsizetype{1} << 32);
    EXPECT_EQ(ByteCount(largest).value(), largest);
    EXPECT_EQ(ByteCount(quint32_be(0x80000001)).value(), 0x80000001);
    EXPECT_EQ(ByteCount(qint16_le(7)).value(), 7);
}

TEST(ByteCount, what_no_bytes_in_memory_have_is_out_of_reach) {
    for (const ByteCount count :
         {ByteCount(-1), ByteCount(std::numeric_limits<qint64>::min()), ByteCount(qint16_be(-2)),
          ByteCount(beyondSigned), ByteCount(std::numeric_limits<quint64>::max())}) {
        EXPECT_FALSE(count.isAtMost(0));
        EXPECT_FALSE(count.isAtMost(largest));
    }
}

TEST(ByteCount, sums_and_products_do_not_wrap) {
    EXPECT_EQ((ByteCount(largest - 1) + 1).value(), largest);
    EXPECT_FALSE((ByteCount(largest) + 1).isAtMost(largest));
    EXPECT_FALSE((ByteCount(largest) + largest).isAtMost(largest));
    EXPECT_FALSE((ByteCount(-1) + 1).isAtMost(largest));
    EXPECT_FALSE((ByteCount(1) + beyondSigned).isAtMost(largest));
    EXPECT_EQ((ByteCount(quint32{0xffffffff}) * 12).value(), qint64{0xffffffff} * 12);
    EXPECT_EQ((ByteCount(largest / 3) * 3).value(), largest / 3 * 3);
    EXPECT_FALSE((ByteCount(largest / 3 + 1) * 3).isAtMost(largest));
    EXPECT_FALSE((ByteCount(quint64{1} << 32U) * (quint64{1} << 32U)).isAtMost(largest));
    EXPECT_EQ((ByteCount(0) * largest).value(), 0);
    EXPECT_EQ((ByteCount(largest) * 0).value(), 0);
    EXPECT_FALSE((ByteCount(0) * -1).isAtMost(largest));
    EXPECT_FALSE((ByteCount(-1) * 0).isAtMost(largest));
}

TEST(ByteReader, numbers_are_read_in_the_order_that_is_asked_for) {
    const ByteReader reader(nine);
    EXPECT_EQ(reader.bigEndian<quint8>(0), 0x81);
    EXPECT_EQ(reader.littleEndian<quint8>(0), 0x81);
    EXPECT_EQ(reader.bigEndian<quint16>(0), 0x8102);
    EXPECT_EQ(reader.littleEndian<quint16>(0), 0x0281);
    EXPECT_EQ(reader.bigEndian<qint16>(0), 0x8102 - 0x10000);
    EXPECT_EQ(reader.littleEndian<qint16>(1), 0x8302 - 0x10000);
    EXPECT_EQ(reader.bigEndian<quint32>(0), 0x81028304U);
    EXPECT_EQ(reader.littleEndian<quint32>(0), 0x04830281U);
    EXPECT_EQ(reader.bigEndian<quint64>(0), 0x8102830485068708U);
    EXPECT_EQ(reader.littleEndian<quint64>(0), 0x0887068504830281U);
    EXPECT_EQ(reader.number<quint16>(7, std::endian::big), 0x0889);
    EXPECT_EQ(reader.number<quint16>(7, std::endian::little), 0x8908);
}

TEST(ByteReader, numbers_at_odd_offsets_are_read) {
    const ByteReader reader(nine);
    EXPECT_EQ(reader.bigEndian<quint16>(1), 0x0283);
    EXPECT_EQ(reader.bigEndian<quint32>(3), 0x04850687U);
    EXPECT_EQ(reader.littleEndian<quint32>(5), 0x89088706U);
    EXPECT_EQ(reader.bigEndian<quint64>(1), 0x0283048506870889U);
    EXPECT_EQ(reader.fourCharCode(5), FourCharCode(0x06870889));
    EXPECT_EQ(quint16{reader.record<Pair>(1)->second}, 0x8504);
}

TEST(ByteReader, numbers_of_any_width_up_to_eight_are_read) {
    const ByteReader reader(nine);
    EXPECT_EQ(reader.number(4, 0, std::endian::big), 0U);
    EXPECT_EQ(reader.number(1, 1, std::endian::big), 0x02U);
    EXPECT_EQ(reader.number(0, 3, std::endian::big), 0x810283U);
    EXPECT_EQ(reader.number(0, 3, std::endian::little), 0x830281U);
    EXPECT_EQ(reader.number(1, 8, std::endian::big), 0x0283048506870889U);
    EXPECT_EQ(reader.number(1, 8, std::endian::little), 0x8908870685048302U);
    EXPECT_FALSE(reader.number(0, 9, std::endian::big));
    EXPECT_FALSE(reader.number(2, 8, std::endian::big));
    EXPECT_FALSE(reader.number(9, 1, std::endian::little));
    EXPECT_FALSE(reader.number(0, -1, std::endian::big));
}

TEST(ByteReader, the_last_bytes_are_read_and_none_beyond) {
    const ByteReader reader(nine);
    EXPECT_TRUE(reader.bigEndian<quint8>(8));
    EXPECT_FALSE(reader.bigEndian<quint8>(9));
    EXPECT_TRUE(reader.bigEndian<quint16>(7));
    EXPECT_FALSE(reader.bigEndian<quint16>(8));
    EXPECT_TRUE(reader.littleEndian<quint32>(5));
    EXPECT_FALSE(reader.littleEndian<quint32>(6));
    EXPECT_TRUE(reader.littleEndian<quint64>(1));
    EXPECT_FALSE(reader.littleEndian<quint64>(2));
    EXPECT_TRUE(reader.fourCharCode(5));
    EXPECT_FALSE(reader.fourCharCode(6));
    EXPECT_TRUE(reader.record<Pair>(5));
    EXPECT_FALSE(reader.record<Pair>(6));
}

TEST(ByteReader, offsets_that_are_out_of_reach_have_no_value) {
    const ByteReader reader(nine);
    for (const ByteCount at : unreachable) {
        EXPECT_FALSE(reader.bigEndian<quint8>(at)) << at.value();
        EXPECT_FALSE(reader.littleEndian<quint64>(at)) << at.value();
        EXPECT_FALSE(reader.number(at, 0, std::endian::big)) << at.value();
        EXPECT_FALSE(reader.fourCharCode(at)) << at.value();
        EXPECT_FALSE(reader.record<Pair>(at)) << at.value();
        EXPECT_FALSE(reader.from(at)) << at.value();
        EXPECT_FALSE(reader.slice(at, 0)) << at.value();
        EXPECT_FALSE(reader.slice(at, 1)) << at.value();
    }
}

TEST(ByteReader, lengths_that_are_out_of_reach_have_no_value) {
    const ByteReader reader(nine);
    for (const ByteCount length : unreachable) {
        EXPECT_FALSE(reader.slice(0, length)) << length.value();
        EXPECT_FALSE(reader.slice(9, length)) << length.value();
        EXPECT_FALSE(reader.slice(length, length)) << length.value();
        EXPECT_FALSE(reader.number(0, length, std::endian::little)) << length.value();
    }
}

TEST(ByteReader, a_slice_has_its_bytes_and_no_others) {
    const ByteReader reader(nine);
    const std::optional<ByteReader> middle = reader.slice(3, 4);
    ASSERT_TRUE(middle);
    EXPECT_EQ(middle->view(), QByteArrayView("\x04\x85\x06\x87"));
    EXPECT_EQ(middle->bigEndian<quint32>(0), 0x04850687U);
    EXPECT_FALSE(middle->bigEndian<quint32>(1));
    EXPECT_FALSE(middle->slice(2, 3));
    EXPECT_EQ(middle->from(2)->view(), QByteArrayView("\x06\x87"));
    EXPECT_FALSE(middle->from(5));
}

TEST(ByteReader, a_slice_may_be_the_whole_or_empty) {
    const ByteReader reader(nine);
    EXPECT_EQ(reader.slice(0, 9)->view(), nine);
    EXPECT_EQ(reader.from(0)->view(), nine);
    for (const int at : {0, 4, 9}) {
        ASSERT_TRUE(reader.slice(at, 0)) << at;
        EXPECT_TRUE(reader.slice(at, 0)->isEmpty()) << at;
    }
    ASSERT_TRUE(reader.from(9));
    EXPECT_EQ(reader.from(9)->size(), 0);
}

TEST(ByteReader, no_bytes_have_nothing_but_an_empty_slice) {
    for (const ByteReader& reader : {ByteReader(QByteArrayView()), ByteReader(QByteArrayView("")),
                                     *ByteReader(nine).from(9), *ByteReader(nine).slice(3, 0)}) {
        EXPECT_TRUE(reader.isEmpty());
        EXPECT_TRUE(reader.slice(0, 0));
        EXPECT_TRUE(reader.from(0));
        EXPECT_EQ(reader.number(0, 0, std::endian::big), 0U);
        EXPECT_FALSE(reader.slice(0, 1));
        EXPECT_FALSE(reader.slice(1, 0));
        EXPECT_FALSE(reader.from(1));
        EXPECT_FALSE(reader.bigEndian<quint8>(0));
        EXPECT_FALSE(reader.littleEndian<qint64>(0));
        EXPECT_FALSE(reader.number(0, 1, std::endian::big));
        EXPECT_FALSE(reader.record<Pair>(0));
        EXPECT_FALSE(reader.record<Pair>(0, 0));
    }
}

TEST(ByteReader, a_record_has_its_fields_in_their_own_order) {
    const std::optional<Pair> pair = ByteReader(nine).record<Pair>(2);
    ASSERT_TRUE(pair);
    EXPECT_EQ(quint16{pair->first}, 0x8304);
    EXPECT_EQ(quint16{pair->second}, 0x0685);
}

TEST(ByteReader, records_stand_one_behind_the_other) {
    const ByteReader reader(nine);
    EXPECT_EQ(quint16{reader.record<Pair>(0, 1)->first}, 0x8506);
    EXPECT_EQ(quint16{reader.record<Pair>(1, 1)->second}, 0x8908);
    EXPECT_FALSE(reader.record<Pair>(2, 1));
    EXPECT_FALSE(reader.record<Pair>(0, 2));
    EXPECT_FALSE(reader.record<Pair>(0, -1));
    EXPECT_FALSE(reader.record<Pair>(4, -1));
    // An unchecked product of four and one of these wraps around to 0 or 4.
    for (const quint64 index : {quint64{1} << 30U, (quint64{1} << 30U) + 1, quint64{1} << 62U,
                                (quint64{1} << 62U) + 1, beyondSigned})
        EXPECT_FALSE(reader.record<Pair>(0, index)) << index;
}
