#include "imaging/icns/IcnsReader.h"
#include "imaging/icns/IcnsRle.h"
#include "imaging/icns/IcnsWriter.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

#include <array>

namespace {

QByteArray packed(const QByteArray& channel, bool lastAlone = false) {
    QByteArray out;
    IcnsRle::pack({reinterpret_cast<const std::uint8_t*>(channel.constData()),
                   static_cast<std::size_t>(channel.size())},
                  out, lastAlone);
    return out;
}

} // namespace

TEST(IcnsRle, runs_begin_at_three_and_end_at_130) {
    EXPECT_EQ(packed({}), QByteArray());
    EXPECT_EQ(packed("aa"), QByteArray("\1aa"));
    EXPECT_EQ(packed("aaa"), QByteArray("\x80"
                                        "a"));
    EXPECT_EQ(packed(QByteArray(130, 'a')), QByteArray("\xff"
                                                       "a"));
    EXPECT_EQ(packed(QByteArray(131, 'a')), QByteArray("\xff"
                                                       "a\0a",
                                                       4));
    EXPECT_EQ(packed("abaaa"), QByteArray("\1ab\x80"
                                          "a"));
}

TEST(IcnsRle, literals_end_at_128) {
    QByteArray channel;
    for (int i = 0; i < 130; ++i)
        channel += static_cast<char>(i);
    EXPECT_EQ(packed(channel), "\x7f" + channel.first(128) + '\1' + channel.last(2));
}

TEST(IcnsRle, the_last_byte_can_stand_alone) {
    EXPECT_EQ(packed("aaaa", true), QByteArray("\x80"
                                               "a\0a",
                                               4));
    EXPECT_EQ(packed({}, true), QByteArray());
}

TEST(IcnsWriter, only_sizes_with_an_element_are_kept) {
    IcnsWriter writer;
    EXPECT_TRUE(writer.isEmpty());
    EXPECT_EQ(writer.addImage(QImage()).error().code, ErrorCode::EmptySize);
    EXPECT_EQ(*writer.addImage(Pictures::flat(48, 48, Qt::red)), IcnsWriter::Added::NoElement);
    EXPECT_EQ(*writer.addImage(Pictures::flat(32, 16, Qt::red)), IcnsWriter::Added::NoElement);
    EXPECT_TRUE(writer.isEmpty());
    EXPECT_EQ(*writer.addImage(Pictures::flat(64, 64, Qt::red)), IcnsWriter::Added::Yes);
    EXPECT_EQ(*writer.addImage(Pictures::flat(16, 16, Qt::red)), IcnsWriter::Added::Yes);
    const QByteArray file = writer.data();
    const Result<IcnsReader> reader = IcnsReader::open(file);
    ASSERT_TRUE(reader);
    std::vector<QString> types;
    for (const IcnsElement& element : reader->elements())
        types.push_back(element.type.text());
    EXPECT_EQ(types,
              (std::vector<QString>{QStringLiteral("ic12"), QStringLiteral("is32"), QStringLiteral("s8mk")}));
}
