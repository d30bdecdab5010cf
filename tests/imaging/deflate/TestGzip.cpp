#include "imaging/deflate/Gzip.h"

#include <gtest/gtest.h>
#include <libdeflate.h>

#include <memory>

namespace {

QByteArray gzip(const QByteArray& bytes) {
    constexpr int level = 6;
    const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> compressor(
        libdeflate_alloc_compressor(level), libdeflate_free_compressor);
    const auto size = static_cast<std::size_t>(bytes.size());
    QByteArray file(static_cast<qsizetype>(libdeflate_gzip_compress_bound(compressor.get(), size)),
                    Qt::Uninitialized);
    file.truncate(static_cast<qsizetype>(libdeflate_gzip_compress(
        compressor.get(), bytes.data(), size, file.data(), static_cast<std::size_t>(file.size()))));
    return file;
}

ErrorCode errorOf(const QByteArray& file, qsizetype most) {
    const Result<QByteArray> bytes = Gzip::unpacked(file, most, QStringLiteral("text"));
    EXPECT_FALSE(bytes);
    return bytes ? ErrorCode::NotFound : bytes.error().code;
}

} // namespace

TEST(Gzip, it_is_known_by_its_first_bytes) {
    EXPECT_TRUE(Gzip::isGzip(gzip("a")));
    EXPECT_FALSE(Gzip::isGzip("<svg/>"));
    EXPECT_FALSE(Gzip::isGzip({}));
}

TEST(Gzip, what_was_packed_comes_out) {
    for (const QByteArray& bytes :
         {QByteArray(), QByteArray("<svg/>"), QByteArray("0123456789").repeated(1000000)}) {
        const Result<QByteArray> unpacked = Gzip::unpacked(gzip(bytes), 10000000, {});
        ASSERT_TRUE(unpacked) << unpacked.error().sentence.toStdString();
        EXPECT_TRUE(*unpacked == bytes) << bytes.size();
    }
}

TEST(Gzip, what_stands_behind_the_first_member_is_left_out) {
    const QByteArray file = gzip("one");
    for (const QByteArray& behind : {gzip("two"), QByteArray("words")})
        EXPECT_EQ(Gzip::unpacked(file + behind, 100, {}).valueOr({}), "one");
}

TEST(Gzip, a_file_that_is_cut_off_or_changed_is_damaged) {
    const QByteArray file = gzip("<svg/>");
    for (qsizetype length = 0; length < file.size(); ++length)
        EXPECT_EQ(errorOf(file.first(length), 100), ErrorCode::Damaged) << length;
    for (const qsizetype at : {qsizetype{0}, qsizetype{2}, file.size() - 8, file.size() - 1}) {
        QByteArray changed = file;
        changed[at] = static_cast<char>(changed[at] ^ 1);
        EXPECT_EQ(errorOf(changed, 100), ErrorCode::Damaged) << at;
    }
}

TEST(Gzip, more_than_is_allowed_is_too_large) {
    const QByteArray file = gzip(QByteArray(100000, ' '));
    EXPECT_TRUE(Gzip::unpacked(file, 100000, {}));
    EXPECT_EQ(errorOf(file, 99999), ErrorCode::TooLarge);
}
