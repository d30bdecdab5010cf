#include "imaging/svg/SvgContent.h"
#include "imaging/svg/SvgDocument.h"
#include "imaging/svg/SvgFonts.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>

namespace {

QByteArray svg(const QByteArray& content) {
    return "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'>" + content + "</svg>";
}

std::string text(const std::vector<QStringList>& lists) {
    QStringList lines;
    for (const QStringList& names : lists)
        lines << names.join(u'|');
    return lines.join(QLatin1String("; ")).toStdString();
}

/// The font families of a list that stand before any generic one.
std::string named(const QByteArray& families) {
    SvgFonts fonts;
    fonts.add(families);
    return text(fonts.lists());
}

/// The fonts that the texts of a document ask for.
std::string asked(const QByteArray& content) {
    const Result<SvgContent> found = SvgContent::of(svg(content));
    return found ? text(found->fonts) : "error: " + found.error().sentence.toStdString();
}

/// The only font while it lives is one of the family "Tobrimax Test".
class OneFont {
  public:
    OneFont() : m_before(qgetenv("FONTCONFIG_FILE")) {
        write("font.bdf",
              "STARTFONT 2.1\nFONT -Test-Tobrimax Test-Medium-R-Normal--8-80-75-75-C-80-ISO10646-1\n"
              "SIZE 8 75 75\nFONTBOUNDINGBOX 8 8 0 0\nSTARTPROPERTIES 3\nFAMILY_NAME \"Tobrimax Test\"\n"
              "FONT_ASCENT 8\nFONT_DESCENT 0\nENDPROPERTIES\nCHARS 1\nSTARTCHAR A\nENCODING 65\n"
              "SWIDTH 1000 0\nDWIDTH 8 0\nBBX 8 8 0 0\nBITMAP\nFF\nFF\nFF\nFF\nFF\nFF\nFF\nFF\nENDCHAR\n"
              "ENDFONT\n");
        write("fonts.conf", "<fontconfig><dir>" + QFile::encodeName(m_folder.path()) + "</dir><cachedir>" +
                                QFile::encodeName(m_folder.path()) + "</cachedir></fontconfig>");
        qputenv("FONTCONFIG_FILE", QFile::encodeName(m_folder.filePath(QStringLiteral("fonts.conf"))));
    }
    ~OneFont() {
        if (m_before.isNull())
            qunsetenv("FONTCONFIG_FILE");
        else
            qputenv("FONTCONFIG_FILE", m_before);
    }
    OneFont(const OneFont&) = delete;
    OneFont& operator=(const OneFont&) = delete;

  private:
    void write(const char* name, const QByteArray& content) {
        QFile file(m_folder.filePath(QLatin1String(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }

    QTemporaryDir m_folder;
    QByteArray m_before;
};

std::string warnings(const QByteArray& content) {
    const Result<std::shared_ptr<const SvgDocument>> document = SvgDocument::fromBytes(svg(content));
    return document ? (*document)->warnings().join(QLatin1String("; ")).toStdString()
                    : "error: " + document.error().sentence.toStdString();
}

const std::string otherFonts =
    "the picture's text is drawn with other fonts, since these are not installed: ";

} // namespace

TEST(SvgFonts, a_list_is_read_up_to_the_first_generic_family) {
    EXPECT_EQ(named("Corporate"), "Corporate");
    EXPECT_EQ(named(" Corporate ,  'Brand  Sans' ,\"C, D\", sans-serif, Never"), "Corporate|Brand Sans|C, D");
    EXPECT_EQ(named("&quot;Brand Sans&quot;,&apos;B&apos;"), "Brand Sans|B");
    EXPECT_EQ(named("Corporate !important"), "Corporate");
    for (const char* none :
         {"", " ", ",,", "serif", "Sans-Serif, Corporate", "'Sans'", "inherit", "system-ui"})
        EXPECT_EQ(named(none), "") << none;
}

TEST(SvgFonts, styles_give_families_by_two_properties) {
    const auto ofStyle = [](const QByteArray& style) {
        QByteArray all;
        for (const QByteArray& families : SvgFonts::ofStyle(style))
            all += '[' + families + ']';
        return all.toStdString();
    };
    EXPECT_EQ(ofStyle("fill:red;FONT-FAMILY : A, 'B;C' ;stroke:none"), "[A, 'B;C']");
    EXPECT_EQ(ofStyle("font-family:&quot;A B&quot;;x:y"), "[\"A B\"]");
    EXPECT_EQ(ofStyle("font:italic 700 12px/1.5 A B, serif"), "[A B, serif]");
    EXPECT_EQ(ofStyle("font:.5em 'A'"), "['A']");
    EXPECT_EQ(ofStyle("font:caption"), "[]");
    EXPECT_EQ(ofStyle("-x-font-family:A;font-size:3px;font-weight:700"), "");
    EXPECT_EQ(ofStyle("a{font-family:A}/* b{font-family:B} */ c{fill:red;font-family:C}"), "[A][C]");
    EXPECT_EQ(ofStyle("a{font-family:A}/*"), "[A]");
}

TEST(SvgFonts, only_those_of_texts_are_asked_for) {
    EXPECT_EQ(asked("<text font-family='A'>a</text>"), "A");
    EXPECT_EQ(asked("<text style='font-family:A, B'>a</text><text font-family='C'>b</text>"), "A|B; C");
    EXPECT_EQ(asked("<text font-family='A'> <tspan font-family='B'>b</tspan> </text>"), "B");
    EXPECT_EQ(asked("<text font-family='A'><![CDATA[b]]></text>"), "A");
    EXPECT_EQ(asked("<g font-family='A'><text>a</text></g>"), "A");
    EXPECT_EQ(asked("<g font-family='A'><text font-family='inherit'>a</text></g>"), "A");
    EXPECT_EQ(asked("<g style='font-family:A'><text font-family='B'>b</text></g>"), "B");
    EXPECT_EQ(asked("<text font-family='A' style='font-family:B'>b</text>"), "B");
    EXPECT_EQ(asked("<text style='font-family:B' font-family='A'>b</text>"), "B");
    for (const char* none :
         {"<g font-family='A'><path d=''/>a</g>", "<text font-family='A'/>",
          "<text font-family='A'> \n</text>", "<g font-family='A'/><text>a</text>",
          "<title style='font-family:A'>a</title>", "<style>text{font-family:A}</style>", "<text>a</text>"})
        EXPECT_EQ(asked(none), "") << none;
}

TEST(SvgFonts, those_of_a_style_sheet_count_where_there_is_text) {
    const QByteArray sheet = "<style>.a{font-family:A}.b{font:9px B,serif}</style>";
    EXPECT_EQ(asked(sheet + "<text class='a'>a</text>"), "A; B");
    EXPECT_EQ(asked("<text font-family='B'>a</text>" + sheet), "B; A");
    EXPECT_EQ(asked("<style><![CDATA[a{font-family:A}]]></style><text>a</text>"), "A");
}

TEST(SvgFonts, their_number_has_a_limit) {
    QByteArray texts;
    for (int i = 0; i < 100; ++i)
        texts +=
            "<text font-family='" + QByteArray("A" + QByteArray::number(i) + ",").repeated(20) + "'>a</text>";
    const Result<SvgContent> found = SvgContent::of(svg(texts));
    ASSERT_TRUE(found);
    EXPECT_EQ(found->fonts.size(), 64U);
    EXPECT_EQ(found->fonts.front().size(), 8);
}

TEST(SvgFonts, what_is_not_installed_is_named_each_once) {
    const OneFont font;
    EXPECT_EQ(warnings("<text font-family='Corporate, sans-serif'>a</text>"), otherFonts + "Corporate");
    EXPECT_EQ(warnings("<text font-family='A, B'>a</text><text font-family='A'>a</text>"
                       "<text font-family='tobrimax test'>a</text><text font-family='C'>a</text>"
                       "<text font-family='D'>a</text><text font-family='E'>a</text>"),
              otherFonts + "A, C, D and 1 more");
}

TEST(SvgFonts, what_is_installed_or_generic_is_not_warned_of) {
    const OneFont font;
    for (const char* content : {"<text font-family='Tobrimax Test'>a</text>", "<text>a</text>",
                                "<text font-family='Corporate, Tobrimax Test'>a</text>",
                                "<text font-family='monospace, Corporate'>a</text>",
                                "<g font-family='Corporate'><rect width='9' height='9'/></g>"})
        EXPECT_EQ(warnings(content), "") << content;
}
