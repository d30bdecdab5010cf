#include "tests/cli/CliTest.h"
#include "tests/support/Slowness.h"

#include <QFileInfo>

#include <sys/stat.h>

namespace {

/// Hostile property lists: each is refused soon and with a sentence, and nothing is written outside of the
/// output folder.
class HostileCatalogues : public CliTest {
  protected:
    ProcessResult generateBy(const QString& catalogue) const {
        return generate(sample(u"svg"_s), {u"--catalogue"_s, catalogue, u"--platform"_s, u"iphone"_s});
    }

    void expectRefused(const QString& catalogue, const char* sentence) const {
        expectRefusal(catalogue, u"not a size catalogue: "_s, sentence);
    }
    void expectUnreadable(const QString& catalogue, const char* sentence) const {
        expectRefusal(catalogue, {}, sentence);
    }
    void expectRefusal(const QString& catalogue, const QString& kind, const char* sentence) const {
        SCOPED_TRACE(catalogue.toStdString());
        const ProcessResult result = generateBy(catalogue);
        expectOneError(result, catalogue + u": "_s + kind);
        EXPECT_EQ(result.errors.contains("not a size catalogue"), !kind.isEmpty());
        EXPECT_TRUE(result.errors.contains(sentence)) << result.errors.constData();
        EXPECT_FALSE(QFileInfo::exists(out()));
        EXPECT_LT(result.seconds, 2 * slowness);
    }

    static QByteArray xml(const QByteArray& type, const QByteArray& root) {
        return "<?xml version='1.0'?><!DOCTYPE plist " + type + "><plist version='1.0'>" + root + "</plist>";
    }

    /// A catalogue for the iPhone with this entry and a sound one.
    QByteArray oneEntry(const QByteArray& name, const QByteArray& dimensions) const {
        const auto entry = [](const QByteArray& key, const QByteArray& entryName, const QByteArray& size) {
            return "<key>" + key + "</key><dict><key>Name</key><string>" + entryName +
                   "</string><key>Dimensions</key><string>" + size + "</string></dict>";
        };
        return "<plist version='1.0'><array><dict>" + entry("a", name, dimensions) +
               entry("b", "sound", "{9, 9}") + "</dict><dict/><dict/><dict/><dict/></array></plist>";
    }
};

const QByteArray appleType =
    "PUBLIC '-//Apple//DTD PLIST 1.0//EN' 'http://www.apple.com/DTDs/PropertyList-1.0.dtd'";

/// The big-endian bytes of a number, `width` of them.
QByteArray number(quint64 value, int width) {
    QByteArray bytes(width, '\0');
    for (int i = width; i-- > 0; value >>= 8)
        bytes[i] = static_cast<char>(value & 0xff);
    return bytes;
}

/// A binary property list of these objects, with references and offsets of four bytes.
QByteArray binary(const QList<QByteArray>& objects) {
    QByteArray bytes = "bplist00";
    QByteArray places;
    for (const QByteArray& object : objects) {
        places += number(static_cast<quint64>(bytes.size()), 4);
        bytes += object;
    }
    const auto table = static_cast<quint64>(bytes.size());
    return bytes + places + QByteArray(6, '\0') + QByteArray("\4\4", 2) +
           number(static_cast<quint64>(objects.size()), 8) + number(0, 8) + number(table, 8);
}

QByteArray arrayOf(const QList<quint64>& references) {
    QByteArray bytes(1, static_cast<char>(0xA0 + references.size()));
    for (const quint64 reference : references)
        bytes += number(reference, 4);
    return bytes;
}

} // namespace

TEST_F(HostileCatalogues, entities) {
    QByteArray laughs = "<!ENTITY e0 'ha'>";
    for (int i = 1; i < 12; ++i)
        laughs += "<!ENTITY e" + QByteArray::number(i) + " '" +
                  ("&e" + QByteArray::number(i - 1) + ";").repeated(10) + "'>";
    const char* declares = "a property list with declarations of its own";
    expectRefused(file(u"laughs.plist"_s, xml("[" + laughs + "]", "<string>&e11;</string>")), declares);
    expectRefused(
        file(u"quadratic.plist"_s, xml("[<!ENTITY e '" + QByteArray(100000, 'a') + "'>]",
                                       "<string>" + QByteArray("&e;").repeated(100000) + "</string>")),
        declares);
    file(u"secret"_s, "nobody's business");
    expectRefused(file(u"external.plist"_s, xml("[<!ENTITY e SYSTEM 'secret'>]", "<string>&e;</string>")),
                  declares);
    expectRefused(file(u"parameter.plist"_s, xml("[<!ENTITY % e SYSTEM 'secret'> %e;]", "<array/>")),
                  declares);
    expectRefused(file(u"undeclared.plist"_s, xml(appleType, "<string>&e;</string>")), "not a");
}

TEST_F(HostileCatalogues, depth) {
    const char* tooDeep = "nested too deep or has too many objects";
    const int deep = 200000;
    expectRefused(file(u"arrays.plist"_s, xml(appleType, QByteArray("<array>").repeated(deep) +
                                                             QByteArray("</array>").repeated(deep))),
                  tooDeep);
    expectRefused(file(u"unclosed.plist"_s, xml(appleType, QByteArray("<array>").repeated(deep))), tooDeep);
    expectRefused(
        file(u"dictionaries.plist"_s, xml(appleType, QByteArray("<dict><key>a</key>").repeated(deep))),
        tooDeep);
    QList<QByteArray> nested;
    for (quint64 i = 1; i <= deep; ++i)
        nested << arrayOf({i});
    nested << arrayOf({});
    expectRefused(file(u"binary.plist"_s, binary(nested)), tooDeep);
    expectRefused(file(u"many.plist"_s,
                       xml(appleType, "<array>" + QByteArray("<true/>").repeated(1000000) + "</array>")),
                  tooDeep);
}

TEST_F(HostileCatalogues, circles) {
    const char* tooDeep = "nested too deep or has too many objects";
    expectRefused(file(u"itself.plist"_s, binary({arrayOf({0})})), tooDeep);
    expectRefused(file(u"itself-often.plist"_s, binary({arrayOf({0, 0, 0, 0, 0, 0, 0, 0})})), tooDeep);
    expectRefused(file(u"two.plist"_s, binary({arrayOf({1}), arrayOf({0})})), tooDeep);
    // There is no circle here, but the list stands for 8^60 objects.
    QList<QByteArray> tree;
    for (quint64 i = 1; i <= 60; ++i)
        tree << arrayOf({i, i, i, i, i, i, i, i});
    tree << arrayOf({});
    expectRefused(file(u"tree.plist"_s, binary(tree)), tooDeep);
}

TEST_F(HostileCatalogues, lies_in_binary_lists) {
    const QByteArray sound = binary({arrayOf({1, 1, 1, 1, 1}), QByteArray("\xd0", 1)});
    ASSERT_EQ(generateBy(file(u"sound.plist"_s, sound)).exitStatus, 0);
    QDir(out()).removeRecursively();
    const auto changed = [&](qsizetype fromEnd, const QByteArray& bytes) {
        return QByteArray(sound).replace(sound.size() - fromEnd, bytes.size(), bytes);
    };
    const QList<QByteArray> lies = {changed(24, number(~0ULL, 8)),      changed(24, number(1ULL << 40, 8)),
                                    changed(24, number(0, 8)),          changed(16, number(7, 8)),
                                    changed(8, number(~0ULL, 8)),       changed(8, number(0, 8)),
                                    changed(26, QByteArray("\0\4", 2)), changed(26, QByteArray("\xff\4", 2)),
                                    changed(26, QByteArray("\4\0", 2)), changed(26, QByteArray("\4\xff", 2))};
    for (const QByteArray& lie : lies)
        expectRefused(file(u"lie.plist"_s, lie), "");
    for (qsizetype length = 0; length < sound.size(); length += 3)
        expectRefused(file(u"cut.plist"_s, sound.left(length)), "");
    // A string, data and an array that each claim a length of about two thousand million.
    for (const char* object :
         {"\x5f\x12\x7f\xff\xff\xff", "\x4f\x12\x7f\xff\xff\xff", "\xaf\x12\x7f\xff\xff\xff"})
        expectRefused(file(u"length.plist"_s, binary({arrayOf({1}), QByteArray(object, 6)})), "");
}

TEST_F(HostileCatalogues, types) {
    for (const char* root :
         {"<string>a</string>", "<integer>5</integer>", "<integer>99999999999999999999</integer>",
          "<real>nan</real>", "<date>never</date>", "<data>!!</data>", "<true/>", "<dict/>", "<other/>",
          "<array><integer/></array>", "<array/><array/>", "text", ""})
        expectRefused(file(u"type.plist"_s, xml(appleType, root)), "");
    expectRefused(file(u"key.plist"_s, xml(appleType, "<array><dict><dict/></dict></array>")), "");
    expectRefused(file(u"html.plist"_s, "<html><body/></html>"), "not a property list");
    expectRefused(file(u"zeros.plist"_s, QByteArray(100000, '\0')), "not a property list");
}

TEST_F(HostileCatalogues, files_that_are_too_large_or_none) {
    const QString large = file(u"large.plist"_s, "<plist>");
    ASSERT_TRUE(QFile::resize(large, qint64{1} << 40));
    expectUnreadable(large, "the file is larger than 16 MiB");
    const QString fifo = path(u"fifo.plist"_s);
    ASSERT_EQ(mkfifo(fifo.toUtf8().constData(), 0600), 0);
    expectUnreadable(fifo, "Not a regular file");
    expectUnreadable(u"/dev/zero"_s, "Not a regular file");
    expectUnreadable(path(QString()), "directory");
    const QString loop = path(u"loop.plist"_s);
    ASSERT_TRUE(QFile::link(loop, loop));
    expectUnreadable(loop, "symbolic links");
}

TEST_F(HostileCatalogues, sizes_that_no_picture_has) {
    const QByteArray digits(100000, '9');
    for (const QByteArray& size :
         {QByteArray("nan"), QByteArray("{nan, nan}"), QByteArray("{inf, inf}"), QByteArray("{-1, -1}"),
          QByteArray("{-10, 10}"), QByteArray("{0, 0}"), QByteArray("{1e400, 1e400}"),
          QByteArray("{1e18, 1e18}"), QByteArray("{2147483648, 2147483648}"),
          QByteArray("{4294967297, 4294967297}"), QByteArray("{65536, 65536}"), QByteArray("{1000000000, 1}"),
          QByteArray("{-0.0, 5}"), QByteArray("{"), QByteArray(), "{" + digits + "," + digits + "}",
          QByteArray(5 << 20, '{')}) {
        SCOPED_TRACE(size.left(40).constData());
        const ProcessResult result = generateBy(file(u"size.plist"_s, oneEntry("bad", size)));
        expectOneError(result, u"bad.png: "_s);
        EXPECT_LT(result.seconds, 2 * slowness);
        EXPECT_EQ(tree(), std::vector<std::string>{"iphone/AppIcon.appiconset/sound.png"});
    }
}

TEST_F(HostileCatalogues, names_that_lead_elsewhere) {
    QDir(path(QString())).mkdir(u"other"_s);
    for (const QByteArray& name :
         {QByteArray("../escaped"), QByteArray("../../../escaped"), QByteArray("a/../../escaped"),
          QByteArray(".."), QByteArray("../.."), QByteArray("/escaped"), QByteArray("//escaped"),
          "/" + path(u"other/escaped"_s).toUtf8(), QByteArray("none/escaped"), QByteArray(5 << 20, 'n'),
          QByteArray(300, 'n')}) {
        SCOPED_TRACE(name.left(40).constData());
        const ProcessResult result = generateBy(file(u"name.plist"_s, oneEntry(name, "{9, 9}")));
        EXPECT_LT(result.seconds, 2 * slowness);
        EXPECT_NE(result.exitStatus, -1);
        EXPECT_EQ(result.exitStatus == 0, otherErrorLines(result).isEmpty())
            << result.errors.left(300).constData();
        for (const std::string& entry : tree(path(QString()))) {
            EXPECT_TRUE(entry == "name.plist" || entry == "other" ||
                        entry.starts_with("icons/iphone/AppIcon.appiconset/"))
                << entry;
        }
        EXPECT_FALSE(QFileInfo::exists(u"/escaped.png"_s));
        EXPECT_TRUE(QFileInfo::exists(out() + u"/iphone/AppIcon.appiconset/sound.png"_s));
        QDir(out()).removeRecursively();
    }
}

TEST_F(HostileCatalogues, names_that_are_only_odd_are_taken_as_they_are) {
    for (const QString& name :
         {u"%2e%2e%2fescaped"_s, u"."_s, u"-rf"_s, u" "_s, u"new\nline"_s, u"$(touch x)"_s}) {
        SCOPED_TRACE(name.toStdString());
        const ProcessResult result = generateBy(file(u"name.plist"_s, oneEntry(name.toUtf8(), "{9, 9}")));
        EXPECT_EQ(result.exitStatus, 0) << result.errors.constData();
        EXPECT_TRUE(QFileInfo::exists(out() + u"/iphone/AppIcon.appiconset/"_s + name + u".png"_s));
        EXPECT_EQ(tree().size(), 2U);
        QDir(out()).removeRecursively();
    }
}
