#include "imaging/svg/SvgContent.h"

#include <gtest/gtest.h>

#include <string>

namespace {

QByteArray svg(const QByteArray& content) {
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink'>" + content +
           "</svg>";
}

std::string warnings(const QByteArray& content) {
    const Result<QStringList> found = SvgContent::leftOut(svg(content));
    return found ? found->join(QLatin1String("; ")).toStdString()
                 : "error: " + found.error().sentence.toStdString();
}

} // namespace

TEST(SvgContent, what_a_drawing_shows_is_not_warned_of) {
    for (const char* content :
         {"", "<rect/>", "<image href='data:image/png;base64,AAAA'/>", "<image xlink:href=\"DATA:a\"/>",
          "<use href='#a'/>", "<a href='http://localhost'/>", "<image href=''/>",
          "<!-- <image href='a.png'/> -->", "<![CDATA[<image href='a.png'/>]]>",
          "<foreignObject requiredExtensions='a'><i/></foreignObject>",
          "<switch><foreignObject/><g/></switch>", "<text>a > b</text>", "<rect id='>'/><rect id=\"<'\"/>"})
        EXPECT_EQ(warnings(content), "") << content;
}

TEST(SvgContent, linked_files_are_named_each_once) {
    const std::string start = "the picture shows nothing of the files that it links to: ";
    EXPECT_EQ(warnings("<image href='a.png'/>"), start + "a.png");
    EXPECT_EQ(warnings("<g><image\n width='9'\txlink:href = \"../b c.jpg\" /></g>"), start + "../b c.jpg");
    EXPECT_EQ(warnings("<image href='a'/><use href='b.svg#c'/><image href='a'/>"), start + "a, b.svg#c");
    EXPECT_EQ(warnings("<s:image xmlns:s='http://www.w3.org/2000/svg' href='a'/>"), start + "a");
    EXPECT_EQ(
        warnings("<image href='1'/><image href='2'/><image href='3'/><image href='4'/><image href='5'/>"),
        start + "1, 2, 3 and 2 more");
}

TEST(SvgContent, foreign_objects_and_variables_are_told) {
    EXPECT_EQ(warnings("<foreignObject><p/></foreignObject>"), "the picture's foreignObject is left out");
    const std::string variables = "the picture has styles with var(), which are left out";
    EXPECT_EQ(warnings("<rect fill='var(--a)'/>"), variables);
    EXPECT_EQ(warnings("<style>rect{fill:var(--a)}</style>"), variables);
    EXPECT_EQ(warnings("<style><![CDATA[rect{fill:var(--a)}]]></style>"), variables);
}

TEST(SvgContent, it_may_be_in_utf_16) {
    const QString text = QString::fromUtf8(svg("<image href='a.png'/>"));
    const QByteArray bytes("\xff\xfe" +
                           QByteArray(reinterpret_cast<const char*>(text.utf16()), 2 * text.size()));
    const Result<QStringList> found = SvgContent::leftOut(bytes);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->size(), 1);
}

TEST(SvgContent, nesting_has_a_limit) {
    const auto nested = [](int depth) {
        return QByteArray("<g>").repeated(depth) + QByteArray("</g>").repeated(depth);
    };
    EXPECT_EQ(warnings(nested(SvgContent::maximumDepth - 1)), "");
    EXPECT_EQ(warnings(nested(SvgContent::maximumDepth)),
              "error: the SVG document is nested deeper than 256 elements");
    EXPECT_EQ(warnings(QByteArray("<g><g/></g>").repeated(1000)), "");
}

TEST(SvgContent, size_has_a_limit) {
    EXPECT_EQ(warnings(QByteArray(qsizetype{64} << 20, ' ')),
              "error: the SVG document is larger than 64 MiB");
}

TEST(SvgContent, broken_documents_come_to_an_end) {
    const QByteArray whole =
        "<!DOCTYPE svg [<!ENTITY a \"b\"><!-- c --><?d e?>]>" +
        svg("<g a='b' c=\"d\" e f=g/><style>h{font:1px i}/*</style><text style='font-family:&quot;k,l' "
            "font-family='m'>n</text><![CDATA[i]]><!-- j --><?k l?>");
    for (qsizetype length = 0; length <= whole.size(); ++length) {
        EXPECT_TRUE(SvgContent::leftOut(whole.left(length))) << length;
        EXPECT_TRUE(SvgContent::leftOut(whole.mid(length))) << length;
    }
}
