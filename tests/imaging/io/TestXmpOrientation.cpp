#include "imaging/image/PictureReader.h"

#include <gtest/gtest.h>

using PictureReader::xmpOrientation;

namespace {

/// A packet whose description has these attributes and elements.
QByteArray packet(const QByteArray& attributes, const QByteArray& elements) {
    return "<?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?>"
           "<x:xmpmeta xmlns:x='adobe:ns:meta/'>"
           "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
           "<rdf:Description xmlns:xmp='http://ns.adobe.com/xap/1.0/' rdf:about=''><xmp:Rating>3</xmp:Rating>"
           "</rdf:Description>"
           "<rdf:Description xmlns:t='http://ns.adobe.com/tiff/1.0/' rdf:about='' " +
           attributes + ">" + elements + "</rdf:Description></rdf:RDF></x:xmpmeta><?xpacket end='w'?>";
}

} // namespace

TEST(XmpOrientation, is_an_element_or_an_attribute_of_a_description) {
    EXPECT_EQ(xmpOrientation(packet("t:Orientation='6'", "")), 6);
    EXPECT_EQ(xmpOrientation(packet("", "<t:Make>x</t:Make><t:Orientation> 8\n</t:Orientation>")), 8);
    EXPECT_EQ(xmpOrientation(packet("", "<t:Orientation>77</t:Orientation>")), 77) << "as it is";
    QByteArray alone = packet("t:Orientation='5'", "");
    alone.replace("<x:xmpmeta xmlns:x='adobe:ns:meta/'>", "").replace("</x:xmpmeta>", "");
    EXPECT_EQ(xmpOrientation(alone), 5);
}

TEST(XmpOrientation, has_no_value_where_none_is_told) {
    for (const QByteArray& bytes :
         {QByteArray(), QByteArray("words"), QByteArray("<a/>"), QByteArray("\xff\xfe\0<"), packet("", ""),
          packet("", "<t:Orientation>six</t:Orientation>"), packet("", "<t:Orientation/>"),
          packet("", "<t:Orientation><t:a>6</t:a></t:Orientation>"), packet("Orientation='6'", ""),
          packet("", "<Orientation>6</Orientation>"),
          // Of a picture that this one was made of.
          packet("", "<t:Make><rdf:Description t:Orientation='6'/></t:Make>"),
          packet("", "<t:Make><rdf:Description><t:Orientation>6</t:Orientation></rdf:Description></t:Make>"),
          "<!DOCTYPE a [<!ENTITY e '6'>]>" + packet("t:Orientation='6'", "")})
        EXPECT_EQ(xmpOrientation(bytes), std::nullopt) << bytes.constData();
}

TEST(XmpOrientation, a_packet_may_break_off_behind_it) {
    const QByteArray whole = packet("", "<t:Orientation>6</t:Orientation>");
    const qsizetype end = whole.indexOf("</t:Orientation>") + qsizetype{16};
    for (qsizetype length = 0; length <= whole.size(); ++length)
        EXPECT_EQ(xmpOrientation(whole.first(length)).has_value(), length >= end) << length;
}

TEST(XmpOrientation, exif_counts_more) {
    const QByteArray turned("MM\0\x2a\0\0\0\x08\0\1\1\x12\0\3\0\0\0\1\0\3\0\0\0\0\0\0", 26);
    const QByteArray others("MM\0\x2a\0\0\0\x08\0\1\1\x00\0\3\0\0\0\1\0\3\0\0\0\0\0\0", 26);
    const QByteArray xmp = packet("t:Orientation='6'", "");
    EXPECT_EQ(PictureReader::orientation(turned, xmp), 3);
    EXPECT_EQ(PictureReader::orientation(others, xmp), 6) << "EXIF without one";
    EXPECT_EQ(PictureReader::orientation({}, xmp), 6);
    EXPECT_EQ(PictureReader::orientation(turned, {}), 3);
    EXPECT_EQ(PictureReader::orientation({}, {}), 1);
}
