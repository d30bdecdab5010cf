#include "platform/services/PropertyList.h"
#include "tests/support/Refusals.h"
#include "tests/support/Slowness.h"
#include "tests/support/Text.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QStringConverter>
#include <QStringEncoder>
#include <QTimeZone>

#include <gtest/gtest.h>

using Refusals::eachBeginning;

namespace {

QByteArray xml(const QByteArray& root) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">" +
           root + "</plist>\n";
}

QVariant parsed(const QByteArray& bytes) {
    const Result<QVariant> value = PropertyList::parse(bytes);
    EXPECT_TRUE(value) << bytes.left(200).constData();
    return value ? *value : QVariant();
}

void expectMalformed(const QByteArray& bytes) {
    const Result<QVariant> value = PropertyList::parse(bytes);
    ASSERT_FALSE(value) << bytes.left(60).toHex().constData();
    EXPECT_EQ(value.error().code, ErrorCode::Malformed);
    EXPECT_FALSE(value.error().sentence.isEmpty());
}

/// What is said of a list that is refused.
QString refusal(const QByteArray& bytes) {
    expectMalformed(bytes);
    const Result<QVariant> value = PropertyList::parse(bytes);
    return value ? QString() : value.error().sentence;
}

/// A binary list of `objects`; the first one is the root. Header, objects, their places and the trailer
/// follow each other.
QByteArray binary(const QList<QByteArray>& objects) {
    QByteArray bytes = "bplist00";
    QByteArray places;
    for (const QByteArray& object : objects) {
        places.append(static_cast<char>(bytes.size()));
        bytes += object;
    }
    const qsizetype table = bytes.size();
    bytes += places;
    bytes += QByteArray(6, '\0') + QByteArray("\1\1", 2); // places and references of one byte each
    bytes += QByteArray(7, '\0') + QByteArray(1, static_cast<char>(objects.size()));
    bytes += QByteArray(8, '\0');
    bytes += QByteArray(7, '\0') + QByteArray(1, static_cast<char>(table));
    return bytes;
}

/// A string object of a binary list. `characters` holds at most 14.
QByteArray ascii(const QByteArray& characters) {
    return QByteArray(1, static_cast<char>(0x50 + characters.size())) + characters;
}

QByteArray nestedArrays(int count) {
    QByteArray open;
    QByteArray close;
    for (int i = 0; i < count; ++i) {
        open += "<array>";
        close += "</array>";
    }
    return xml(open + close);
}

} // namespace

TEST(PropertyList, every_type_is_read_from_xml) {
    const QVariantMap map = parsed(xml("<dict>"
                                       "<key>string</key><string>a &lt; \xc3\xa4</string>"
                                       "<key>empty</key><string></string>"
                                       "<key>integer</key><integer>42</integer>"
                                       "<key>negative</key><integer>-7</integer>"
                                       "<key>real</key><real>2.5</real>"
                                       "<key>yes</key><true/>"
                                       "<key>no</key><false/>"
                                       "<key>data</key><data>AAEC/w==</data>"
                                       "<key>date</key><date>2020-02-29T12:34:56Z</date>"
                                       "<key>array</key><array><integer>1</integer><string>b</string></array>"
                                       "<key>dictionary</key><dict><key>k</key><string>v</string></dict>"
                                       "</dict>"))
                                .toMap();
    EXPECT_EQ(map.size(), 11);
    EXPECT_EQ(map.value(text("string")), QVariant(text("a < ä")));
    EXPECT_EQ(map.value(text("empty")), QVariant(text("")));
    EXPECT_EQ(map.value(text("integer")), QVariant(qint64{42}));
    EXPECT_EQ(map.value(text("negative")), QVariant(qint64{-7}));
    EXPECT_EQ(map.value(text("real")), QVariant(2.5));
    EXPECT_EQ(map.value(text("yes")), QVariant(true));
    EXPECT_EQ(map.value(text("no")), QVariant(false));
    EXPECT_EQ(map.value(text("data")), QVariant(QByteArray("\0\1\2\xff", 4)));
    EXPECT_EQ(map.value(text("date")),
              QVariant(QDateTime(QDate(2020, 2, 29), QTime(12, 34, 56), QTimeZone::utc())));
    EXPECT_EQ(map.value(text("date")).toDateTime().timeSpec(), Qt::UTC);
    EXPECT_EQ(map.value(text("array")), QVariant(QVariantList{qint64{1}, text("b")}));
    EXPECT_EQ(map.value(text("dictionary")), QVariant(QVariantMap{{text("k"), text("v")}}));
}

TEST(PropertyList, types_are_told_apart) {
    EXPECT_EQ(parsed(xml("<integer>1</integer>")).typeId(), QMetaType::LongLong);
    EXPECT_EQ(parsed(xml("<real>1</real>")).typeId(), QMetaType::Double);
    EXPECT_EQ(parsed(xml("<true/>")).typeId(), QMetaType::Bool);
    EXPECT_EQ(parsed(xml("<string>1</string>")).typeId(), QMetaType::QString);
}

TEST(PropertyList, every_type_is_read_from_binary) {
    // A dictionary with eight keys (objects 1 to 8) and eight values (9 to 16). The array's items follow.
    QByteArray dictionary = "\xd8";
    for (char i = 1; i <= 16; ++i)
        dictionary.append(i);
    const QVariantMap map =
        parsed(binary({dictionary, ascii("s"), ascii("u"), ascii("i"), ascii("r"), ascii("t"), ascii("b"),
                       ascii("d"), ascii("a"), ascii("abc"), QByteArray("\x61\0\xe4", 3),
                       QByteArray("\x11\x01\x02", 3), QByteArray("\x23\x40\x04\0\0\0\0\0\0", 9), "\x09",
                       QByteArray("\x43\0\1\xff", 4), QByteArray("\x33\x41\xc2\x10\xdb\xb8\0\0\0", 9),
                       "\xa2\x11\x12", "\x08", QByteArray("\x13\xff\xff\xff\xff\xff\xff\xff\xfe", 9)}))
            .toMap();
    EXPECT_EQ(map.size(), 8);
    EXPECT_EQ(map.value(text("s")), QVariant(text("abc")));
    EXPECT_EQ(map.value(text("u")), QVariant(text("ä")));
    EXPECT_EQ(map.value(text("i")), QVariant(qint64{0x102}));
    EXPECT_EQ(map.value(text("r")), QVariant(2.5));
    EXPECT_EQ(map.value(text("t")), QVariant(true));
    EXPECT_EQ(map.value(text("b")), QVariant(QByteArray("\0\1\xff", 3)));
    // 0x2421b770 seconds after the beginning of 2001.
    EXPECT_EQ(map.value(text("d")),
              QVariant(QDateTime(QDate(2001, 1, 1), QTime(0, 0), QTimeZone::utc()).addSecs(0x2421b770)));
    EXPECT_EQ(map.value(text("a")), QVariant(QVariantList{false, qint64{-2}}));
}

TEST(PropertyList, integers_of_64_bits_keep_their_value) {
    EXPECT_EQ(parsed(xml("<integer>9223372036854775807</integer>")).toString(), text("9223372036854775807"));
    EXPECT_EQ(parsed(xml("<integer>-9223372036854775808</integer>")).toString(),
              text("-9223372036854775808"));
}

TEST(PropertyList, the_root_may_be_any_type) {
    EXPECT_EQ(parsed(xml("<string>root</string>")), QVariant(text("root")));
    EXPECT_EQ(parsed(xml("<array/>")), QVariant(QVariantList()));
    EXPECT_EQ(parsed(xml("<dict/>")), QVariant(QVariantMap()));
    EXPECT_EQ(parsed(binary({ascii("root")})), QVariant(text("root")));
}

TEST(PropertyList, the_declarations_before_the_list_may_be_missing) {
    EXPECT_EQ(parsed("<plist version=\"1.0\"><string>a</string></plist>"), QVariant(text("a")));
    EXPECT_EQ(parsed("\n  <plist><string>a</string></plist>"), QVariant(text("a")));
}

TEST(PropertyList, a_byte_order_mark_is_passed_over) {
    EXPECT_EQ(parsed("\xef\xbb\xbf" + xml("<string>a</string>")), QVariant(text("a")));
}

TEST(PropertyList, an_encoding_that_is_declared_is_honoured) {
    const auto declared = [](const QByteArray& encoding, const QByteArray& string) {
        return "<?xml version='1.0' encoding='" + encoding + "'?><plist><string>" + string +
               "</string></plist>";
    };
    EXPECT_EQ(parsed(declared("ISO-8859-1", "\xfc\xe9")), QVariant(text("üé")));
    EXPECT_EQ(parsed(declared("iso-8859-1", "\xfc")), QVariant(text("ü")));
    EXPECT_EQ(parsed(declared("UTF-8", "ü")), QVariant(text("ü")));
    EXPECT_EQ(parsed(declared("utf-8", "ü")), QVariant(text("ü")));
    EXPECT_EQ(parsed(declared("US-ASCII", "u&#252;")), QVariant(text("uü")));
    EXPECT_EQ(parsed("<?xml version=\"1.0\"\n encoding = \"ISO-8859-1\" standalone=\"yes\" ?>"
                     "<plist><string>\xfc</string></plist>"),
              QVariant(text("ü")));
    for (const QByteArray& encoding : {QByteArray("UTF-16"), QByteArray("utf-16be"), QByteArray("UTF-8")}) {
        const QString list = QString::fromUtf8(declared(encoding, "ü🎨"));
        for (const auto order : {QStringConverter::Utf16BE, QStringConverter::Utf16LE}) {
            for (const auto flag : {QStringConverter::Flag::WriteBom, QStringConverter::Flag::Default}) {
                QStringEncoder encoder(order, flag);
                EXPECT_EQ(parsed(encoder.encode(list)), QVariant(text("ü🎨"))) << encoding.constData();
            }
        }
    }
    EXPECT_EQ(parsed("\xef\xbb\xbf" + declared("ISO-8859-1", "ü")), QVariant(text("ü"))) << "the mark tells";
}

TEST(PropertyList, an_encoding_that_is_not_known_is_refused_by_its_name) {
    for (const char* encoding : {"windows-1252", "UTF-32", "EUC-JP", "ISO-8859-15", "utf-7"}) {
        const QByteArray list = "<?xml version=\"1.0\" encoding=\"" + QByteArray(encoding) +
                                "\"?><plist><string>a</string></plist>";
        EXPECT_TRUE(refusal(list).contains(text(encoding))) << encoding;
    }
}

TEST(PropertyList, bytes_that_are_not_of_the_encoding_are_refused) {
    const QByteArray plain = "<plist><string>\xfc</string></plist>";
    EXPECT_TRUE(refusal(plain).contains(text("not UTF-8")));
    EXPECT_TRUE(refusal("<?xml version='1.0' encoding='UTF-8'?>" + plain).contains(text("not UTF-8")));
    EXPECT_TRUE(refusal("<?xml version='1.0' encoding='US-ASCII'?>" + plain).contains(text("not US-ASCII")));
    EXPECT_TRUE(refusal("<?xml version='1.0' encoding='UTF-16'?><plist><string>a</string></plist>")
                    .contains(text("not UTF-16")));
    expectMalformed(QByteArray("\xfe\xff\0<\0p\xd8\0\0l", 10));
}

TEST(PropertyList, nesting_of_64_is_read_and_deeper_nesting_is_an_error) {
    QVariant value = parsed(nestedArrays(64));
    int depth = 1;
    for (; !value.toList().isEmpty(); ++depth)
        value = value.toList().constFirst();
    EXPECT_EQ(depth, 64);
    expectMalformed(nestedArrays(66));
    expectMalformed(nestedArrays(200));
}

TEST(PropertyList, very_deep_nesting_is_an_error_and_does_not_exhaust_the_stack) {
    expectMalformed(nestedArrays(300000));
}

TEST(PropertyList, a_binary_list_that_holds_itself_is_an_error) {
    expectMalformed(binary({QByteArray("\xa1\0", 2)}));
    expectMalformed(binary({"\xa1\x01", QByteArray("\xa1\0", 2)}));
}

TEST(PropertyList, no_bytes_are_an_error) {
    expectMalformed({});
    expectMalformed("\n");
}

TEST(PropertyList, garbage_is_an_error) {
    expectMalformed("This is no property list.");
    expectMalformed("{ a = b; }");
    expectMalformed("[1, 2]");
    expectMalformed(QByteArray(100, '\0'));
    expectMalformed("<?xml version=\"1.0\"?><html><body/></html>");
    expectMalformed("<svg xmlns=\"http://www.w3.org/2000/svg\"/>");
    expectMalformed("bplist00");
    expectMalformed("bplist00" + QByteArray(200, '\xff'));
    expectMalformed(xml("<unknown/>"));
    expectMalformed(xml({}));
}

TEST(PropertyList, an_xml_list_cut_off_within_its_root_is_an_error) {
    const QByteArray whole = "<?xml "
                             "version=\"1.0\"?><plist><dict><key>a</key><array><string>text</string><true/></"
                             "array></dict></plist>";
    ASSERT_TRUE(PropertyList::parse(whole));
    // A cut after the root leaves out only the end of the list.
    eachBeginning(
        whole, [](const QByteArray& bytes) { EXPECT_FALSE(PropertyList::parse(bytes)) << bytes.constData(); },
        whole.size() - whole.indexOf("</plist>"));
}

TEST(PropertyList, a_binary_list_cut_off_at_any_byte_is_an_error) {
    const QByteArray whole = binary({"\xd1\x01\x02", ascii("k"), "\xa1\x03", ascii("abc")});
    ASSERT_TRUE(PropertyList::parse(whole));
    eachBeginning(whole, [](const QByteArray& bytes) { EXPECT_FALSE(PropertyList::parse(bytes)); });
}

TEST(PropertyList, a_flipped_byte_in_a_binary_list_never_crashes_nor_hangs) {
    const QByteArray whole = binary({"\xd1\x01\x02", ascii("k"), "\xa2\x03\x04", ascii("abc"), "\x10\x05"});
    QElapsedTimer timer;
    timer.start();
    int readable = 0;
    for (qsizetype at = 8; at < whole.size(); ++at) {
        for (int value = 0; value < 256; ++value) {
            QByteArray bytes = whole;
            bytes[at] = static_cast<char>(value);
            const Result<QVariant> result = PropertyList::parse(bytes);
            if (result)
                ++readable;
            else
                EXPECT_EQ(result.error().code, ErrorCode::Malformed);
        }
    }
    EXPECT_GE(readable, whole.size() - 8) << "at least each time the byte is what it was";
    EXPECT_LT(timer.elapsed(), 20000 * slowness);
}

TEST(PropertyList, declarations_of_its_own_are_refused) {
    const QByteArray list = "<?xml version=\"1.0\"?><!DOCTYPE plist [ <!ENTITY a ']><plist><array>'> ]>"
                            "<plist version=\"1.0\"><array/></plist>";
    const Result<QVariant> parsed = PropertyList::parse(list);
    ASSERT_FALSE(parsed);
    EXPECT_EQ(parsed.error().code, ErrorCode::Malformed);
}

TEST(PropertyList, a_nul_in_a_binary_text_or_key_is_refused_and_ends_nothing) {
    const QByteArray key("\x51k", 2);
    const QByteArray asciiNul("\x53"
                              "a\0b",
                              4);
    const QByteArray utf16Nul("\x62\0a\0\0", 5);
    const QByteArray dictionary("\xd1\x01\x02", 3);
    for (const QByteArray& nul : {asciiNul, utf16Nul}) {
        expectMalformed(binary({nul}));
        expectMalformed(binary({dictionary, key, nul}));
        expectMalformed(binary({dictionary, nul, key}));
    }
    // Texts without a NUL are read.
    EXPECT_EQ(parsed(binary({QByteArray("\x52"
                                        "ab",
                                        3)})),
              text("ab"));
    EXPECT_EQ(parsed(binary({QByteArray("\x62\0a\x20\xac", 5)})), text("a€"));
}

TEST(PropertyList, a_text_that_reaches_beyond_the_list_is_refused) {
    expectMalformed(binary({QByteArray("\x5f\x12\x7f\xff\xff\xff", 6)}));
    expectMalformed(binary({QByteArray("\x6f\x10\xff", 3)}));
}

TEST(PropertyList, a_binary_collection_whose_count_is_no_count_is_refused) {
    // An array with the count `count`. Readers take a count of 16 bytes differently.
    const auto list = [](const QByteArray& count) {
        QByteArray bytes = "bplist00\xAF" + count +
                           QByteArray("\x01\x51"
                                      "a",
                                      3);
        const auto table = static_cast<char>(bytes.size());
        const auto string = static_cast<char>(bytes.size() - 2);
        bytes += QByteArray("\x08", 1) + string;
        bytes += QByteArray(6, '\0') + QByteArray("\x01\x01", 2);
        bytes += QByteArray(7, '\0') + '\x02' + QByteArray(8, '\0') + QByteArray(7, '\0') + table;
        return bytes;
    };
    EXPECT_TRUE(PropertyList::parse(list(QByteArray("\x10\x01", 2))));
    EXPECT_FALSE(PropertyList::parse(list('\x14' + QByteArray(15, '\0') + '\x01')));
    EXPECT_FALSE(PropertyList::parse(list(QByteArray("\x51\x01", 2))));
    EXPECT_FALSE(PropertyList::parse(list(QByteArray("\x10\x70", 2))));
}
