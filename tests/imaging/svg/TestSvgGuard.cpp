#include "imaging/png/PngWriter.h"
#include "imaging/svg/SvgGuard.h"
#include "imaging/svg/SvgStyle.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

#include <string>

namespace {

QByteArray svg(const QByteArray& content, const QByteArray& attributes = {}) {
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='100' "
           "height='100' " +
           attributes + ">" + content + "</svg>";
}

/// The sentence with which the document is refused; empty where it is let through.
std::string refusal(const QByteArray& document) {
    const Result<Done> checked = SvgGuard::check(document);
    return checked ? std::string() : checked.error().sentence.toStdString();
}

void expectRefused(const QByteArray& document, const std::string& part) {
    const std::string sentence = refusal(document);
    EXPECT_NE(sentence.find(part), std::string::npos)
        << "\"" << sentence << "\" for " << document.left(300).constData();
}

void expectLetThrough(const QByteArray& document) {
    EXPECT_EQ(refusal(document), "") << document.left(300).constData();
}

QByteArray number(int i) {
    return QByteArray::number(i);
}

/// A chain of `levels` elements. Each one refers ten times to the one before. `wrap` makes an element with an
/// id and a content, `refer` makes a reference to an id.
template <typename Wrap, typename Refer>
QByteArray tenfold(int levels, const QByteArray& first, Wrap wrap, Refer refer) {
    QByteArray content = wrap("a0", first);
    for (int i = 1; i < levels; ++i)
        content += wrap("a" + number(i), QByteArray(refer("a" + number(i - 1))).repeated(10));
    return content + refer("a" + number(levels - 1));
}

QByteArray group(const QByteArray& id, const QByteArray& content) {
    return "<g id='" + id + "'>" + content + "</g>";
}
QByteArray use(const QByteArray& id) {
    return "<use href='#" + id + "'/>";
}
const QByteArray dot = "<rect width='1' height='1'/>";
const std::string tooOften = "drawn too often";

} // namespace

TEST(SvgGuard, what_multiplies_by_any_kind_of_reference_is_refused) {
    const auto wrapped = [](const QByteArray& tag, const QByteArray& attributes = {}) {
        return [=](const QByteArray& id, const QByteArray& content) {
            return "<" + tag + " " + attributes + " id='" + id + "'>" + content + "</" + tag + ">";
        };
    };
    const auto painted = [](const QByteArray& property) {
        return
            [=](const QByteArray& id) { return "<path d='M0 0H9V9' " + property + "='url(#" + id + ")'/>"; };
    };
    expectRefused(svg(tenfold(7, dot, group, use)), tooOften);
    expectRefused(svg(tenfold(7, dot, wrapped("symbol"), use)), tooOften);
    for (const char* property : {"fill", "stroke"})
        expectRefused(svg(tenfold(6, dot, wrapped("pattern"), painted(property))), tooOften);
    for (const char* property : {"marker", "marker-start", "marker-mid", "marker-end"})
        expectRefused(svg(tenfold(6, dot, wrapped("marker"), painted(property))), tooOften);
    expectRefused(svg(tenfold(6, dot, wrapped("mask"), painted("mask"))), "too often");
    expectRefused(svg(tenfold(6, dot, wrapped("clipPath"), painted("clip-path"))), "too often");
    // Pictures in a filter are drawn for each element that has the filter.
    expectRefused(
        svg(tenfold(
            6, dot,
            [](const QByteArray& id, const QByteArray& content) {
                return "<filter id='f" + id + "'><feImage href='#" + id + "'/></filter>" + group(id, content);
            },
            [](const QByteArray& id) { return "<rect width='9' height='9' filter='url(#f" + id + ")'/>"; })),
        "too often");
}

TEST(SvgGuard, a_few_levels_of_references_are_let_through) {
    expectLetThrough(svg(tenfold(4, dot, group, use)));
}

TEST(SvgGuard, references_are_seen_however_they_are_written) {
    const QByteArray patterns = [] {
        QByteArray content = "<pattern id='p0'>" + dot + "</pattern>";
        for (int i = 1; i < 6; ++i) {
            content +=
                "<pattern id='p" + number(i) + "'>" +
                QByteArray("<path d='M0 0' class='c" + number(i - 1) + " x' id='i" + number(i - 1) + "'/>")
                    .repeated(10) +
                "</pattern>";
        }
        return content + "<path d='M0 0' class='c5 x'/>";
    }();
    const auto sheet = [&](const QByteArray& before, const QByteArray& value, const QByteArray& after) {
        QByteArray rules;
        for (int i = 0; i < 6; ++i)
            rules += before + ".c" + number(i) + after +
                     "{fill:" + QByteArray(value).replace('N', number(i)) + "}";
        return svg("<style>" + rules + "</style>" + patterns);
    };
    expectRefused(sheet("", "url(#pN)", ""), tooOften);
    expectRefused(sheet("", "url( '#pN' ) #fff", ""), tooOften);
    expectRefused(sheet("", "u\\72 l(#pN)", ""), tooOften);
    expectRefused(sheet("", "URL(\\23 pN)", ""), tooOften);
    expectRefused(sheet("/* } */", "/*;*/url(#pN)/**/", " /* , */ "), tooOften);
    expectRefused(sheet("a > b, svg ", "url(#pN) !important", ""), tooOften);
    expectRefused(sheet("path.x", "url(#pN)", ":not(.y)"), tooOften);
    expectRefused(sheet("a[x={;}]{y:[}]} ", "url(#pN)", ""), tooOften);
    expectRefused(sheet("@font-face{src:url(x)} @media print{}", "url(#pN)", ""), tooOften);
    expectRefused(sheet("<![CDATA[<!--", "url(#pN)", "]]>"), tooOften);
    expectLetThrough(sheet("", "url(#qN)", ""));
    expectLetThrough(sheet("", "#fff;src:'url(#pN)'", ""));
}

TEST(SvgGuard, what_an_element_has_from_those_around_it_counts) {
    const QByteArray patterns = tenfold(
        4, dot,
        [](const QByteArray& id, const QByteArray& content) {
            return "<pattern id='" + id + "'>" + content + "</pattern>";
        },
        [](const QByteArray& id) { return "<path d='M0 0' fill='url(#" + id + ")'/>"; });
    const QByteArray shapes = QByteArray("<path d='M0 0'/>").repeated(100);
    expectLetThrough(svg(patterns + shapes));
    expectRefused(svg(patterns + "<g fill='url(#a3)'>" + shapes + "</g>"), tooOften);
    expectRefused(svg(patterns + "<g style='fill:url(#a3)'>" + shapes + "</g>"), tooOften);
    expectRefused(svg(patterns + "<defs>" + group("g", shapes) + "</defs><use fill='url(#a3)' href='#g'/>"),
                  tooOften);
    expectLetThrough(svg(patterns + "<g fill='url(#a3)'><g fill='none'>" + shapes + "</g></g>"));
    expectRefused(svg(patterns + "<g fill='url(#a3)'><g fill='nonsense'>" + shapes + "</g></g>"), tooOften);
}

TEST(SvgGuard, markers_count_at_every_point) {
    const QByteArray marker = "<marker id='m'>" + dot.repeated(100) + "</marker>";
    const auto line = [&](int points) {
        return svg(marker + "<path marker-mid='url(#m)' d='M0 0" + QByteArray("l.1.1").repeated(points) +
                   "'/>");
    };
    expectLetThrough(line(100));
    expectRefused(line(5000), tooOften);
}

TEST(SvgGuard, circles_of_references_are_refused) {
    const std::string circle = "in a circle";
    expectRefused(svg(group("a", use("a"))), circle);
    expectRefused(svg("<use id='a' href='#a'/>"), circle);
    expectRefused(svg("<defs>" + group("a", use("b")) + group("b", use("a")) + "</defs>" + use("a")), circle);
    expectRefused(svg("<pattern id='p'><rect fill='url(#q)'/></pattern>"
                      "<pattern id='q'><rect fill='url(#p)'/></pattern><rect fill='url(#p)'/>"),
                  circle);
    // A common mistake: the marker refers to itself. It is drawn without that reference.
    expectLetThrough(svg("<style>path{marker-end:url(#m)}</style><marker id='m'><path d='M0 0'/></marker>"
                         "<path d='M0 0L9 9'/>"));
    expectRefused(svg("<style>path{marker-end:url(#m)}</style><marker id='m'><path id='x' d='M0 0'/></marker>"
                      "<path d='M0 0L9 9'/><use href='#x'/>"),
                  circle);
}

TEST(SvgGuard, what_is_nested_too_deep_is_refused) {
    const auto nested = [](int depth, const QByteArray& tag) {
        return svg(QByteArray("<" + tag + ">").repeated(depth) + QByteArray("</g>").repeated(depth));
    };
    expectLetThrough(nested(SvgGuard::maximumDepth - 1, "g"));
    expectRefused(nested(SvgGuard::maximumDepth, "g"), "nested deeper than 250 elements");
    expectLetThrough(nested(64, "g opacity='.5'"));
    expectRefused(nested(65, "g opacity='.5'"), "nested deeper than 64");
    const auto chain = [](int length) {
        QByteArray content = "<defs><g id='a0'/>";
        for (int i = 1; i < length; ++i)
            content += "<use id='a" + number(i) + "' href='#a" + number(i - 1) + "'/>";
        return svg(content + "</defs>" + use("a" + number(length - 1)));
    };
    expectLetThrough(chain(390));
    expectRefused(chain(420), "nested deeper than 400");
    expectRefused(chain(50000), "nested deeper than 400");
}

TEST(SvgGuard, too_many_elements_are_refused) {
    expectLetThrough(svg(QByteArray("<g/>").repeated(SvgGuard::maximumElements - 1)));
    expectRefused(svg(QByteArray("<g/>").repeated(SvgGuard::maximumElements)), "more than 200000 elements");
}

TEST(SvgGuard, too_many_rules_for_the_elements_are_refused) {
    const QByteArray elements = QByteArray("<g class='a'/>").repeated(2000);
    expectLetThrough(svg("<style>" + QByteArray(".a{fill:url(#p)}").repeated(1000) + "</style>" + elements));
    expectRefused(svg("<style>" + QByteArray(".a{fill:url(#p)}").repeated(6000) + "</style>" + elements),
                  "style rules");
}

TEST(SvgGuard, long_texts_are_refused) {
    const auto text = [](int length) { return "<text>" + QByteArray(length, 'a') + "</text>"; };
    expectLetThrough(svg(text(2000).repeated(10) + "<title>" + QByteArray(100000, 'a') + "</title>"));
    expectRefused(svg(text(2001)), "a text of more than 2000");
    expectRefused(svg(text(2000).repeated(10) + text(1)), "more than 20000 characters");
    expectRefused(svg("<text>" + ("<tspan>" + QByteArray(300, 'a') + "</tspan>").repeated(10) + "</text>"),
                  "a text of more than 2000");
}

TEST(SvgGuard, filters_that_take_forever_or_end_the_process_are_refused) {
    const auto filter = [](const QByteArray& primitive) {
        return svg("<filter id='f'>" + primitive + "</filter><rect width='9' height='9' filter='url(#f)'/>");
    };
    expectLetThrough(filter("<feTurbulence baseFrequency='.1' numOctaves='12'/>"));
    expectRefused(filter("<feTurbulence baseFrequency='.1' numOctaves='13'/>"), "octaves");
    expectLetThrough(filter("<feConvolveMatrix order='10' kernelMatrix='1'/>"));
    for (const char* order : {"11", "21 , 21", "2 300", "1e9", " 101 1"})
        expectRefused(filter("<feConvolveMatrix order='" + QByteArray(order) + "' kernelMatrix='1'/>"),
                      "convolution");
}

TEST(SvgGuard, a_filter_that_tiles_is_refused) {
    expectRefused(svg("<filter id='f' width='0'><feFlood/><feTile/></filter><rect filter='url(#f)'/>"),
                  "tiles");
}

TEST(SvgGuard, what_moves_an_element_may_refer_to_it_from_within) {
    for (const QByteArray name : {"animate", "animateColor", "animateMotion", "animateTransform", "set"})
        expectLetThrough(svg("<circle id='a' r='1'><" + name + " href='#a'/></circle>"));
    expectLetThrough(svg("<path id='a'><animateMotion><mpath href='#a'/></animateMotion></path>"));
}

TEST(SvgGuard, letters_of_a_mile_are_refused) {
    const std::string large = "text that is too large";
    const auto text = [](const QByteArray& attributes) {
        return "<text " + attributes + ">a<tspan " + attributes + ">b</tspan></text>";
    };
    expectLetThrough(svg(text("font-size='120%'")));
    // The name of a font family may contain any words.
    for (const char* font :
         {"12px system-ui, sans-serif", "600 24px/1.5 'Helvetica Neue 75'", "10pt ex-serif"})
        expectLetThrough(svg("<g><g><g>" + text("style=\"font:" + QByteArray(font) + "\"") + "</g></g></g>"));
    expectRefused(svg(text("style='font:1000em system-ui'")), large);
    expectRefused(svg(text("style='font:italic 1e6REM a'")), large);
    expectLetThrough(
        svg("<g transform='matrix(1.3 0 0 -1.3 -2000 9000) rotate(500)'>" + text("font-size='5in'") + "</g>",
            "viewBox='0 0 24 24'"));
    expectLetThrough(svg("<g transform='scale(1e9)'><rect width='1'/></g>"));
    expectRefused(svg(text("font-size='1e7'")), large);
    expectRefused(svg(text("font-size='20000in'")), large);
    expectRefused(svg(text("style='font:bold 1e9px serif'")), large);
    expectRefused(svg("<style>tspan{font-size:1e9px}</style>" + text("")), large);
    expectRefused(svg(text("font-size='1000em'")), large);
    expectRefused(svg("<g transform='scale(1000)'><g transform='scale(1000)'>" + text("") + "</g></g>"),
                  large);
    expectRefused(svg("<defs><g id='a' transform='scale(1000)'>" + text("") +
                      "</g></defs><use transform='scale(1000)' href='#a'/>"),
                  large);
    expectRefused(svg(text(""), "viewBox='0 0 1e-9 1e-9'"), large);
}

TEST(SvgGuard, dashes_beyond_number_are_refused) {
    const auto dashed = [](const QByteArray& line, const QByteArray& dashes) {
        return svg("<path d='" + line + "' stroke='#000' stroke-dasharray='" + dashes + "'/>");
    };
    expectLetThrough(dashed("M0 0L1000 1000", "2 1"));
    expectLetThrough(dashed("M0 0L1000 1000", "0 0"));
    expectRefused(dashed("M-1e6 5L1e6 5", ".01 .01"), "dashes");
    expectRefused(svg("<g style='stroke-dasharray:1e-6'><line x2='1000' stroke='#000'/></g>"), "dashes");
}

TEST(SvgGuard, entities_and_default_attributes_are_refused) {
    expectRefused("<!DOCTYPE svg [<!ENTITY fill '#f00'>]>" + svg("<rect fill='&fill;'/>"),
                  "declares entities");
    expectRefused("<!DOCTYPE svg [<!ENTITY % more 'x'>]>" + svg({}), "declares entities");
    expectRefused("<!DOCTYPE svg [<!ENTITY e SYSTEM 'e'>]>" + svg({}), "external entity");
    expectRefused("<!DOCTYPE svg [<!ATTLIST g fill CDATA 'url(#p)'>]>" + svg({}), "declares attributes");
    expectLetThrough("<!DOCTYPE svg PUBLIC '-//W3C//DTD SVG 1.1//EN' "
                     "'http://www.w3.org/Graphics/SVG/1.1/DTD/svg11.dtd'>" +
                     svg({}));
}

TEST(SvgGuard, only_PNG_and_JPEG_pictures_may_be_embedded) {
    const auto image = [](const QByteArray& link) { return svg("<image width='9' href='" + link + "'/>"); };
    const QByteArray png = encodePng(Pictures::flat(4, 4, QColor(255, 0, 0)))->toBase64();
    expectLetThrough(image("data:image/png;base64," + png));
    expectLetThrough(image(" data:image/png;base64," + png.left(20) + "\n  " + png.mid(20)));
    expectLetThrough(image("data:;base64," + png));
    const std::string other = "something else than a PNG or JPEG";
    expectRefused(image("data:image/svg+xml;base64," + svg(dot).toBase64()), other);
    expectRefused(image("d&#x9;ata:image/png;base64," + svg(dot).toBase64()), other);
    expectRefused(image("DATA:image/png;base64," + svg(dot).toBase64()), other);
    expectRefused(image("data:image/x-tga;base64," + png), other);
    expectRefused(image("data:image/gif;base64,R0lGODlhAQABAAAAACw="), other);
    expectRefused(image("data:image/png"), other);
    expectRefused(image("data:image/png;base64,!!!!"), "not encoded");
    expectRefused(image("data:image/png;base64," + png.left(60)), "in the SVG document, the PNG picture is");
    const QByteArray document = "data:image/svg+xml;base64," + svg(group("x", dot)).toBase64() + "#x";
    expectRefused(svg("<use href='" + document + "'/>"), "another document as data");
    expectRefused(svg("<rect fill='url(" + document + ")'/>"), "another document as data");
    expectRefused(svg("<style>rect{fill:url(\"" + document + "\")}</style>"), "another document as data");
    expectRefused(svg("<style>@import url(data:text/css,rect{});</style>"), "style sheet as data");
    expectRefused(svg("<style>@import 'data:text/css,rect{}';</style>"), "style sheet as data");
    expectRefused("<?xml-stylesheet href='data:text/css,rect{}'?>" + svg({}), "style sheet as data");
    expectRefused(svg("<i:include xmlns:i='http://www.w3.org/2001/XInclude' href='data:,x'/>"),
                  "another document as data");
    expectLetThrough(svg("<style>@font-face{font-family:a;src:url(data:font/woff;base64,AAAA)}</style>"
                         "<a href='data:,x'/>"));
}

TEST(SvgGuard, embedded_pictures_that_say_to_be_enormous_are_refused) {
    QByteArray png = *encodePng(Pictures::flat(4, 4, QColor(255, 0, 0)));
    png.replace(16, 8, QByteArray::fromHex("0000753000007530"));
    expectRefused(svg("<image href='data:image/png;base64," + png.toBase64() + "'/>"),
                  "more than 33554432 pixels");
    QByteArray jpeg = QByteArray::fromHex("ffd8ffe000104a46494600010100000100010000"
                                          "ffc0000b08ffffffff01011100");
    expectRefused(svg("<feImage href='data:image/jpeg;base64," + jpeg.toBase64() + "'/>"),
                  "more than 33554432 pixels");
}

TEST(SvgGuard, an_embedded_png_that_does_not_begin_with_its_header_tells_no_size) {
    // A chunk before the header that looks like a small one.
    QByteArray png = *encodePng(Pictures::flat(4, 4, QColor(255, 0, 0)));
    png.insert(8, QByteArray::fromHex("00000008707256740000000100000001aaf3d159"));
    expectRefused(svg("<image href='data:image/png;base64," + png.toBase64() + "'/>"), "it tells no size");
}

TEST(SvgGuard, what_is_not_well_formed_is_refused_with_its_line) {
    expectRefused("<svg>\n<rect>\n</svg>", "line 3: ");
}

TEST(SvgStyle, declarations_come_without_comments_and_escapes) {
    const std::vector<SvgStyle::Declaration> found =
        SvgStyle::declarations(u"FILL : u\\52L( \"#a\\)\" ) none; /* x:y; */ stroke:#FFF;;broken;a:(b;c);");
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[0].property, QLatin1String("fill"));
    EXPECT_EQ(found[0].urls, QStringList{QStringLiteral("#a)")});
    EXPECT_EQ(found[0].value, QLatin1String("none"));
    EXPECT_EQ(found[1].property, QLatin1String("stroke"));
    EXPECT_EQ(found[1].value, QLatin1String("#FFF"));
    EXPECT_EQ(found[2].value, QLatin1String("(b;c)"));
}

TEST(SvgStyle, a_rule_has_the_key_of_its_selectors_last_part) {
    const SvgStyle::Sheet sheet =
        SvgStyle::sheet(u"a b.c#d, .x > rect ,.e\\:f:hover{} *{} @media x{g>.h{}} @import 'i'; svg|j{}");
    QStringList keys;
    for (const SvgStyle::Rule& rule : sheet.rules)
        keys << rule.key;
    EXPECT_EQ(keys.join(u' ').toStdString(), "#d rect .e:f  .h j");
    EXPECT_EQ(sheet.imports, QStringList{QStringLiteral("i")});
}

TEST(SvgGuard, style_sheets_that_multiply_are_refused) {
    const auto sheet = [](int selectors, int declarations) {
        return "<style>" + QByteArray("a,").repeated(selectors - 1) + "a{" +
               QByteArray("x:y;").repeated(declarations) + "}</style>";
    };
    expectLetThrough(svg(sheet(100, 100)));
    expectRefused(svg(sheet(400, 400)), "style sheets that are too large");
    expectRefused(svg(sheet(100, 100).repeated(20)), "style sheets that are too large");
    expectRefused(svg("<style>" + QByteArray((1 << 20) + 1, ' ') + "</style>"),
                  "style sheets that are too large");
    expectRefused(svg("<rect fill='" + QByteArray(";").repeated((1 << 20) + 1) + "'/>"),
                  "a value that is too long");
}

TEST(SvgGuard, what_is_written_in_another_way_is_seen) {
    const QByteArray spaces = QByteArray("&#x20;").repeated(300);
    expectRefused(svg("<image href='" + spaces + "data:image/svg+xml,x' width='1' height='1'/>"),
                  "embeds something");
    expectRefused(
        svg("<image href='d" + QByteArray("&#9;").repeated(300) + "ata:text/css,x' width='1' height='1'/>"),
        "embeds something");
    const QByteArray line = "<path d='M0 0H1e6' stroke='#000' style='";
    expectRefused(svg(line + "stroke-d&#97;sharray:1e-9'/>"), "dashes that are too short");
    expectRefused(svg(line + "stroke-d\\61 sharray:1e-9'/>"), "dashes that are too short");
}
