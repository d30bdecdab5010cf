#include "platform/forks/AppleDouble.h"
#include "tests/support/BigEndian.h"
#include "tests/support/Refusals.h"

#include <gtest/gtest.h>

using Refusals::eachBeginning;

namespace {

const QByteArray start = big<quint32>(0x00051607) + big<quint32>(0x00020000) + "Mac OS X        ";

QByteArray finderBytes() {
    QByteArray bytes(32, '\0');
    for (int i = 0; i < 32; ++i)
        bytes[i] = static_cast<char>(i);
    return bytes;
}

/// Finder information followed by two extended attributes, whose offsets fit an entry at `offset`.
QByteArray finderBytesWithAttributes(quint32 offset) {
    const quint32 dataStart = offset + 34 + 36 + 16 + 20;
    return finderBytes() + QByteArray(2, '\0') + "ATTR" + big<quint32>(7) + big<quint32>(dataStart + 8) +
           big<quint32>(dataStart) + big<quint32>(8) + QByteArray(12, '\0') + big<quint16>(0) +
           big<quint16>(2) + big<quint32>(dataStart) + big<quint32>(3) + big<quint16>(0) +
           QByteArray("\5abcd\0", 6) + big<quint32>(dataStart + 3) + big<quint32>(5) + big<quint16>(0) +
           QByteArray("\7abcdef\0", 8) + QByteArray(1, '\0') + "111" + "22222";
}

QByteArray entry(quint32 identifier, quint32 offset, quint32 length) {
    return big(identifier) + big(offset) + big(length);
}

void expectError(const QByteArray& bytes, ErrorCode code) {
    const Result<AppleDouble> parsed = AppleDouble::parse(bytes);
    ASSERT_FALSE(parsed);
    EXPECT_EQ(parsed.error().code, code);
}

} // namespace

TEST(AppleDouble, finder_information_stands_first_and_the_fork_last) {
    AppleDouble file;
    file.setResourceFork("fork");
    file.setFinderInfo(FinderInfo(finderBytes()));
    EXPECT_EQ(file.data(),
              start + big<quint16>(2) + entry(9, 50, 32) + entry(2, 82, 4) + finderBytes() + "fork");
}

TEST(AppleDouble, what_is_written_is_read) {
    AppleDouble file;
    file.setResourceFork("fork");
    FinderInfo info;
    info.setType("icon");
    info.setCreator("MACS");
    info.setFlags(FinderInfo::isInvisible);
    file.setFinderInfo(info);
    const Result<AppleDouble> again = AppleDouble::parse(file.data());
    ASSERT_TRUE(again);
    EXPECT_EQ(again->resourceFork(), "fork");
    EXPECT_EQ(again->finderInfo(), info);
    EXPECT_EQ(again->finderInfo().bytes(), "iconMACS" + big<quint16>(0x4000) + QByteArray(22, '\0'));
}

TEST(AppleDouble, what_is_not_there_is_empty) {
    const AppleDouble file;
    EXPECT_EQ(file.resourceFork(), QByteArray());
    EXPECT_EQ(file.finderInfo(), FinderInfo());
    // Both entries are written even if they are empty: macOS does not read a file without them.
    EXPECT_EQ(file.data(),
              start + big<quint16>(2) + entry(9, 50, 32) + entry(2, 82, 0) + QByteArray(32, '\0'));
}

TEST(AppleDouble, other_entries_and_the_filler_are_kept) {
    const QByteArray other = big<quint32>(0x00051607) + big<quint32>(0x00020000) + "0123456789abcdef";
    const QByteArray bytes = other + big<quint16>(4) + entry(9, 74, 32) + entry(3, 106, 4) +
                             entry(8, 110, 3) + entry(2, 113, 0) + finderBytes() + "name" + "day";
    Result<AppleDouble> file = AppleDouble::parse(bytes);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->data(), bytes);
    file->setResourceFork("fork");
    EXPECT_EQ(file->data(), other + big<quint16>(4) + entry(9, 74, 32) + entry(3, 106, 4) + entry(8, 110, 3) +
                                entry(2, 113, 4) + finderBytes() + "name" + "day" + "fork");
}

TEST(AppleDouble, what_follows_the_finder_information_is_kept) {
    const QByteArray bytes =
        start + big<quint16>(2) + entry(9, 50, 40) + entry(2, 90, 4) + finderBytes() + "8 bytes." + "fork";
    Result<AppleDouble> file = AppleDouble::parse(bytes);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->data(), bytes);
    file->setFinderInfo(FinderInfo());
    EXPECT_EQ(file->data(), start + big<quint16>(2) + entry(9, 50, 40) + entry(2, 90, 4) +
                                QByteArray(32, '\0') + "8 bytes." + "fork");
}

TEST(AppleDouble, extended_attributes_move_with_their_entry) {
    const QByteArray attributes = finderBytesWithAttributes(38);
    const auto size = static_cast<quint32>(attributes.size());
    Result<AppleDouble> file = AppleDouble::parse(start + big<quint16>(1) + entry(9, 38, size) + attributes);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->data(), start + big<quint16>(2) + entry(9, 50, size) + entry(2, 50 + size, 0) +
                                finderBytesWithAttributes(50));
    file->setResourceFork("fork");
    EXPECT_EQ(file->data(), start + big<quint16>(2) + entry(9, 50, size) + entry(2, 50 + size, 4) +
                                finderBytesWithAttributes(50) + "fork");
}

TEST(AppleDouble, extended_attributes_move_towards_the_start_too) {
    const QByteArray attributes = finderBytesWithAttributes(100);
    const auto size = static_cast<quint32>(attributes.size());
    const Result<AppleDouble> file =
        AppleDouble::parse(start + big<quint16>(1) + entry(9, 100, size) + QByteArray(62, '-') + attributes);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->data(), start + big<quint16>(2) + entry(9, 50, size) + entry(2, 50 + size, 0) +
                                finderBytesWithAttributes(50));
}

TEST(AppleDouble, attributes_that_break_off_are_moved_as_far_as_they_go) {
    const QByteArray attributes = finderBytesWithAttributes(38).left(34 + 36 + 16 + 5);
    Result<AppleDouble> file = AppleDouble::parse(
        start + big<quint16>(1) + entry(9, 38, static_cast<quint32>(attributes.size())) + attributes);
    ASSERT_TRUE(file);
    file->setResourceFork("fork");
    EXPECT_TRUE(file->data().endsWith(finderBytesWithAttributes(50).left(34 + 36 + 16) + attributes.right(5) +
                                      "fork"));
}

TEST(AppleDouble, a_file_cut_off_at_any_byte_is_damaged) {
    AppleDouble file;
    file.setResourceFork("fork");
    file.setFinderInfo(FinderInfo(finderBytes()));
    eachBeginning(file.data(), [](const QByteArray& bytes) { expectError(bytes, ErrorCode::Damaged); });
}

TEST(AppleDouble, anything_else_is_refused) {
    expectError("not such a file, whatever its name", ErrorCode::Damaged);
    expectError(big<quint32>(0x00051607) + big<quint32>(0x00010000) + QByteArray(18, '\0'),
                ErrorCode::Unsupported);
    expectError(start + big<quint16>(1) + entry(2, 0xffffffff, 1), ErrorCode::Damaged);
    expectError(start + big<quint16>(1) + entry(2, 0, 0xffffffff), ErrorCode::Damaged);
    expectError(start + big<quint16>(2) + entry(2, 50, 0) + entry(2, 50, 0), ErrorCode::Damaged);
    // Two entries share bytes.
    expectError(start + big<quint16>(2) + entry(2, 0, 50) + entry(3, 0, 50), ErrorCode::Damaged);
}

TEST(AppleDouble, too_many_entries_are_refused) {
    const auto fileOf = [](quint16 count) {
        QByteArray entries;
        for (quint32 i = 0; i < count; ++i)
            entries += entry(100 + i, 26, 0);
        return start + big(count) + entries;
    };
    const Result<AppleDouble> most = AppleDouble::parse(fileOf(254));
    ASSERT_TRUE(most);
    EXPECT_TRUE(AppleDouble::parse(most->data())) << "with the two that are always written";
    for (const quint16 count : {quint16{255}, quint16{257}, quint16{2000}})
        expectError(fileOf(count), ErrorCode::Unsupported);
}
