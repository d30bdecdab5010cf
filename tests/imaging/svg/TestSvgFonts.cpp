#include "imaging/svg/SvgDocument.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>

namespace {

QByteArray textDrawing(const QByteArray& content) {
    return "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'>" + content + "</svg>";
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

std::string warningsOf(const QByteArray& content) {
    const Result<std::shared_ptr<const SvgDocument>> document = SvgDocument::fromBytes(textDrawing(content));
    return document ? (*document)->warnings().join(QLatin1String("; ")).toStdString()
                    : "error: " + document.error().sentence.toStdString();
}

const std::string otherFonts =
    "the picture's text is drawn with other fonts, since these are not installed: ";

} // namespace

TEST(SvgFonts, a_list_is_read_up_to_the_first_generic_family) {
    const OneFont font;
    const auto missing = [](const QByteArray& families) {
        return warningsOf("<text font-family=\"" + families + "\">a</text>");
    };
    EXPECT_EQ(missing("Corporate"), otherFonts + "Corporate");
    EXPECT_EQ(missing(" 'Brand  Sans' , B, sans-serif, Never"), otherFonts + "Brand Sans");
    EXPECT_EQ(missing("&quot;Brand Sans&quot;,&apos;B&apos;"), otherFonts + "Brand Sans");
    EXPECT_EQ(missing("Corporate, Tobrimax Test"), "");
    EXPECT_EQ(missing("Corporate, serif, Tobrimax Test"), otherFonts + "Corporate");
    for (const char* none : {"", "serif", "Sans-Serif, Corporate", "'Sans'", "inherit", "system-ui", "Mono"})
        EXPECT_EQ(missing(none), "") << none;
}

TEST(SvgFonts, what_a_text_inherits_and_what_style_sheets_say_counts) {
    const OneFont font;
    for (const char* content :
         {"<g font-family='A'><text>a</text></g>", "<text style='font-family:A'>a</text>",
          "<g font-family='A'><text font-family='inherit'>a</text></g>",
          "<text font-family='B' style='font-family:A'>a</text>",
          "<text font-family='A'><![CDATA[b]]></text>",
          "<text font-family='Tobrimax Test'> <tspan font-family='A'>b</tspan> </text>",
          "<style>.a{font-family:A}.b{font-family:B}</style><text class='a'>a</text>",
          "<style><![CDATA[text{font-family:A}]]></style><text>a</text>"})
        EXPECT_EQ(warningsOf(content), otherFonts + "A") << content;
    for (const char* content :
         {"<g font-family='A'><path d=''/>a</g>", "<text font-family='A'/>",
          "<g font-family='A'/><text>a</text>", "<title style='font-family:A'>a</title>",
          "<style>text{font-family:A}</style>", "<defs><text font-family='A'>a</text></defs>",
          "<text font-family='A' display='none'>a</text>"})
        EXPECT_EQ(warningsOf(content), "") << content;
}

TEST(SvgFonts, the_font_of_texts_that_ask_for_none_is_no_wish) {
    const OneFont font;
    EXPECT_EQ(warningsOf("<text>a</text>"), "");
    EXPECT_EQ(warningsOf("<text font-family='Times New Roman'>a</text>"), otherFonts + "Times New Roman");
}

TEST(SvgFonts, a_thousand_long_names_do_no_harm) {
    const OneFont font;
    QByteArray texts;
    for (int i = 0; i < 1000; ++i)
        texts +=
            "<text font-family='Corporate A" + QByteArray::number(i) + QByteArray(90, 'x') + "'>a</text>";
    EXPECT_EQ(warningsOf(texts).rfind(otherFonts + "Corporate A0x", 0), 0U);
}

TEST(SvgFonts, what_is_not_installed_is_named_each_once) {
    const OneFont font;
    EXPECT_EQ(warningsOf("<text font-family='Corporate, sans-serif'>a</text>"), otherFonts + "Corporate");
    EXPECT_EQ(warningsOf("<text font-family='A, B'>a</text><text font-family='A'>a</text>"
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
        EXPECT_EQ(warningsOf(content), "") << content;
}
