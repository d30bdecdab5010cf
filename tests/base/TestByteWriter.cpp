#include "base/ByteReader.h"
#include "base/ByteWriter.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

struct Mixed {
    quint32_be code;
    quint16_le length;
    char letters[2];
};
static_assert(sizeof(Mixed) == 8);

} // namespace

TEST(ByteWriter, numbers_are_written_in_the_order_that_is_asked_for) {
    QByteArray bytes;
    ByteWriter writer(bytes);
    writer.bigEndian<quint8>(0xfe).bigEndian<quint16>(0x0102).bigEndian<quint32>(0x80000003);
    writer.littleEndian<quint8>(0xfd).littleEndian<quint16>(0x0102).littleEndian<quint32>(0x80000003);
    EXPECT_EQ(bytes, QByteArray("\xfe\1\2\x80\0\0\3\xfd\2\1\3\0\0\x80", 14));
    bytes.clear();
    writer.bigEndian<quint64>(0x8102030405060708).littleEndian<quint64>(0x8102030405060708);
    EXPECT_EQ(bytes, QByteArray("\x81\2\3\4\5\6\7\x8\x8\7\6\5\4\3\2\x81", 16));
}

TEST(ByteWriter, negative_numbers_are_written_as_two_s_complement) {
    QByteArray bytes;
    ByteWriter(bytes).bigEndian<qint16>(-16455).littleEndian<qint32>(-2).bigEndian<qint8>(-128);
    EXPECT_EQ(bytes, QByteArray("\xbf\xb9\xfe\xff\xff\xff\x80", 7));
}

TEST(ByteWriter, what_is_there_already_stays) {
    QByteArray bytes("abc");
    ByteWriter writer(bytes);
    writer.bytes("de").bytes({}).bigEndian<quint16>(0x6667).fourCharCode("hijk");
    EXPECT_EQ(bytes, "abcdefghijk");
}

TEST(ByteWriter, a_record_is_written_with_its_fields_own_orders) {
    QByteArray bytes("-");
    ByteWriter(bytes).record(Mixed{quint32_be(0x69636e73), quint16_le(0x0102), {'x', 'y'}});
    EXPECT_EQ(bytes, QByteArray("-icns\2\1xy"));
}

TEST(ByteWriter, what_is_written_is_read) {
    for (const quint64 value : {quint64{0}, quint64{1} << 31U, (quint64{1} << 32U) - 1, quint64{1} << 32U,
                                quint64{1} << 63U, std::numeric_limits<quint64>::max()}) {
        QByteArray bytes(1, '-'); // puts the numbers at odd offsets
        ByteWriter(bytes).bigEndian<quint64>(value).littleEndian<quint64>(value);
        EXPECT_EQ(ByteReader(bytes).bigEndian<quint64>(1), value);
        EXPECT_EQ(ByteReader(bytes).littleEndian<quint64>(9), value);
    }
}

TEST(ByteWriter, a_number_takes_the_place_of_bytes_that_are_there) {
    QByteArray bytes("abcdefg");
    const QByteArray before = bytes;
    ByteWriter writer(bytes);
    EXPECT_TRUE(writer.replaceBigEndian<quint32>(3, 0x30313233));
    EXPECT_EQ(bytes, "abc0123");
    EXPECT_TRUE(writer.replaceBigEndian<quint16>(0, 0x3839));
    EXPECT_EQ(bytes, "89c0123");
    EXPECT_EQ(before, "abcdefg") << "a copy that was made earlier";
}

TEST(ByteWriter, no_number_takes_the_place_of_bytes_that_are_not_there) {
    QByteArray bytes("abcdefg");
    ByteWriter writer(bytes);
    for (const ByteCount at : {ByteCount(4), ByteCount(7), ByteCount(8), ByteCount(-1),
                               ByteCount(quint64{1} << 32U), ByteCount(std::numeric_limits<qsizetype>::max()),
                               ByteCount(std::numeric_limits<qsizetype>::max() - 3),
                               ByteCount(quint64{1} << 63U), ByteCount(std::numeric_limits<quint64>::max())})
        EXPECT_FALSE(writer.replaceBigEndian<quint32>(at, 0)) << at.value();
    EXPECT_EQ(bytes, "abcdefg");
    bytes.clear();
    EXPECT_FALSE(writer.replaceBigEndian<quint8>(0, 1));
    EXPECT_TRUE(bytes.isEmpty());
}

TEST(ByteWriter, the_bytes_of_a_number_are_its_own) {
    EXPECT_EQ(bigEndianBytes<quint16>(0x0102), (std::array<std::uint8_t, 2>{1, 2}));
    EXPECT_EQ(littleEndianBytes<quint16>(0x0102), (std::array<std::uint8_t, 2>{2, 1}));
    EXPECT_EQ(bigEndianBytes<quint32>(0x80000000), (std::array<std::uint8_t, 4>{0x80, 0, 0, 0}));
}
