#include "files/PathBytes.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

TEST(PathBytes, utf8_is_read_as_it_is) {
    for (const char* path : {"", "/a/b", "a%41:b", "ü e\u0301 差☃🎨"}) {
        EXPECT_EQ(PathBytes::decoded(path), text(path)) << path;
        EXPECT_EQ(PathBytes::encoded(text(path)), path) << path;
        EXPECT_EQ(PathBytes::withReplacements(text(path)), text(path)) << path;
    }
}

TEST(PathBytes, a_byte_order_mark_is_a_part_of_the_name) {
    const QString name = QChar(QChar::ByteOrderMark) + QStringLiteral("a");
    EXPECT_EQ(PathBytes::decoded("\xef\xbb\xbf"
                                 "a"),
              name);
    EXPECT_EQ(PathBytes::encoded(name), "\xef\xbb\xbf"
                                        "a");
    EXPECT_EQ(PathBytes::withReplacements(name + QChar(0xDCE9)), name + QChar(QChar::ReplacementCharacter));
}

TEST(PathBytes, any_bytes_come_back) {
    for (const QByteArray& path :
         {QByteArray("caf\xe9"), QByteArray("/\xff/\xfe/\x80"), QByteArray("a\xc3"), QByteArray("\xc3(b"),
          QByteArray("\xed\xa0\x80"), QByteArray("\xed\xb3\xa9"), QByteArray("\xf4\x90\x80\x80"),
          QByteArray("\xc0\xaf"), QByteArray("ü\xff🎨\xc3"), QByteArray("\xef\xbb\xbf\xff")}) {
        const QString decoded = PathBytes::decoded(path);
        EXPECT_EQ(PathBytes::encoded(decoded), path) << path.toHex().constData();
        EXPECT_EQ(decoded.count(u'/'), path.count('/')) << path.toHex().constData();
    }
    for (int i = 0; i < 256 * 256; ++i) {
        const QByteArray path = QByteArray(1, static_cast<char>(i >> 8)) + static_cast<char>(i) + "a";
        ASSERT_EQ(PathBytes::encoded(PathBytes::decoded(path)), path) << i;
    }
}

TEST(PathBytes, a_byte_that_is_no_utf8_has_a_unit_of_its_own) {
    const QString decoded = PathBytes::decoded("ü\xe9");
    EXPECT_EQ(decoded, text("ü") + QChar(0xDCE9));
    EXPECT_EQ(PathBytes::rawByte(decoded[0]), std::nullopt);
    EXPECT_EQ(PathBytes::rawByte(decoded[1]), quint8{0xE9});
    // A half of 🎨 in UTF-16 stands for nothing.
    EXPECT_EQ(PathBytes::encoded(text("🎨")), "🎨");
}

TEST(PathBytes, readers_of_unicode_get_a_replacement) {
    EXPECT_EQ(PathBytes::withReplacements(PathBytes::decoded("caf\xe9 ü")), text("caf\ufffd ü"));
}
