#include "imaging/io/ImageSource.h"
#include "imaging/png/PngWriter.h"
#include "imaging/svg/SvgDocument.h"
#include "tests/support/Pictures.h"
#include "tests/support/Refusals.h"
#include "tests/support/Slowness.h"

#include <QElapsedTimer>
#include <QFile>
#include <QStringConverter>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>

using Pictures::Pixel;
using Pictures::pixel;
using Refusals::expectNeedsEveryByte;

namespace {

constexpr Pixel clear{0, 0, 0, 0};
constexpr Pixel red{255, 0, 0, 255};
constexpr Pixel green{0, 255, 0, 255};
constexpr Pixel blue{0, 0, 255, 255};

QByteArray svg(const QByteArray& attributes, const QByteArray& content) {
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" " +
           attributes + ">" + content + "</svg>";
}

const QByteArray redSquare = svg("width='4' height='4'", "<rect width='4' height='4' fill='#f00'/>");

QSizeF sizeOf(const QByteArray& document) {
    const Result<std::shared_ptr<const SvgDocument>> result = SvgDocument::fromBytes(document);
    EXPECT_TRUE(result) << result.error().sentence.toStdString();
    return result ? (*result)->size() : QSizeF();
}

/// The document as a picture of its own size, null where it can't be read.
QImage drawn(const QByteArray& document) {
    Result<DecodedPicture> picture = ImageSource::decode(document);
    EXPECT_TRUE(picture) << picture.error().sentence.toStdString();
    return picture ? picture->raster : QImage();
}

/// The document stretched to width × height pixels.
QImage rendered(const QByteArray& document, int width, int height) {
    const Result<std::shared_ptr<const SvgDocument>> result = SvgDocument::fromBytes(document);
    EXPECT_TRUE(result) << result.error().sentence.toStdString();
    if (!result)
        return {};
    return *(*result)->rendered({0, 0, static_cast<double>(width), width},
                                {0, 0, static_cast<double>(height), height});
}

void expectError(const QByteArray& document, ErrorCode code) {
    const Result<LoadedPicture> picture = ImageSource::load(document);
    ASSERT_FALSE(picture) << document.left(200).constData();
    EXPECT_EQ(picture.error().code, code) << picture.error().sentence.toStdString();
    EXPECT_FALSE(picture.error().sentence.isEmpty());
}

void expectRedSquare(const QByteArray& document) {
    const QImage raster = drawn(document);
    ASSERT_EQ(raster.size(), QSize(4, 4));
    EXPECT_EQ(pixel(raster, 0, 0), red);
    EXPECT_EQ(pixel(raster, 3, 3), red);
}

void expectNear(const Pixel& found, const Pixel& wanted, int tolerance) {
    EXPECT_NEAR(found.red, wanted.red, tolerance);
    EXPECT_NEAR(found.green, wanted.green, tolerance);
    EXPECT_NEAR(found.blue, wanted.blue, tolerance);
    EXPECT_NEAR(found.alpha, wanted.alpha, tolerance);
}

/// Whether the whole raster is transparent.
bool isClear(const QImage& raster) {
    return !raster.isNull() &&
           Pictures::same(raster, Pictures::flat(raster.width(), raster.height(), QColor(0, 0, 0, 0)));
}

QByteArray gzip(const QByteArray& bytes) {
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, 9, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY), Z_OK);
    QByteArray out(static_cast<qsizetype>(deflateBound(&stream, static_cast<uLong>(bytes.size()))),
                   Qt::Uninitialized);
    QByteArray in = bytes;
    stream.next_in = reinterpret_cast<Bytef*>(in.data());
    stream.avail_in = static_cast<uInt>(in.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    out.truncate(static_cast<qsizetype>(stream.total_out));
    deflateEnd(&stream);
    return out;
}

QByteArray utf16(const QByteArray& document, QStringConverter::Encoding encoding) {
    QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
    return encoder(QString::fromUtf8(document));
}

/// A folder with files that a document may point at.
class Folder {
  public:
    QByteArray path(const char* name) const {
        return QFile::encodeName(m_folder.filePath(QLatin1String(name)));
    }
    QByteArray url(const char* name) const { return "file://" + path(name); }
    void write(const char* name, const QByteArray& bytes) const {
        QFile file(m_folder.filePath(QLatin1String(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }

  private:
    QTemporaryDir m_folder;
};

} // namespace

// Sizes.

TEST(SvgDocument, its_width_and_height_are_its_size) {
    EXPECT_EQ(sizeOf(svg("width='30' height='10'", {})), QSizeF(30, 10));
    EXPECT_EQ(sizeOf(svg("width='30' height='10' viewBox='0 0 300 300'", {})), QSizeF(30, 10));
}

TEST(SvgDocument, an_inch_has_96_pixels) {
    EXPECT_EQ(sizeOf(svg("width='30px' height='1in'", {})), QSizeF(30, 96));
    EXPECT_EQ(sizeOf(svg("width='72pt' height='6pc'", {})), QSizeF(96, 96));
}

TEST(SvgDocument, without_a_size_the_view_box_is_its_size) {
    EXPECT_EQ(sizeOf(svg("viewBox='5 6 40 20'", {})), QSizeF(40, 20));
}

TEST(SvgDocument, a_size_in_percent_is_that_of_the_view_box) {
    EXPECT_EQ(sizeOf(svg("width='100%' height='100%' viewBox='0 0 40 20'", {})), QSizeF(40, 20));
    EXPECT_EQ(sizeOf(svg("width='50%' height='50%' viewBox='0 0 40 20'", {})), QSizeF(40, 20));
}

TEST(SvgDocument, without_any_size_it_is_as_large_as_what_it_draws) {
    const QByteArray document = svg({}, "<rect x='2' y='3' width='10' height='5' fill='#00f'/>");
    EXPECT_EQ(sizeOf(document), QSizeF(12, 8));
    const QImage raster = drawn(document);
    ASSERT_EQ(raster.size(), QSize(12, 8));
    EXPECT_EQ(pixel(raster, 1, 3), clear);
    EXPECT_EQ(pixel(raster, 2, 3), blue);
    EXPECT_EQ(pixel(raster, 11, 7), blue);
    EXPECT_EQ(pixel(raster, 11, 2), clear);
}

TEST(SvgDocument, an_empty_size_is_an_error) {
    expectError(svg("width='0' height='0'", {}), ErrorCode::Damaged);
    expectError(svg("width='0' height='10'", {}), ErrorCode::Damaged);
    expectError(svg("width='10' height='0'", {}), ErrorCode::Damaged);
    expectError(svg("viewBox='0 0 0 0'", {}), ErrorCode::Damaged);
    expectError(svg({}, {}), ErrorCode::Damaged);
}

TEST(SvgDocument, a_picture_of_a_document_beyond_the_limit_is_refused) {
    for (const char* size :
         {"width='20000' height='20000'", "width='1e12' height='1e12'", "width='1e300' height='1'"}) {
        const Result<DecodedPicture> picture = ImageSource::decode(svg(size, {}));
        ASSERT_FALSE(picture) << size;
        EXPECT_NE(picture.error().code, ErrorCode::UnknownFormat) << size;
    }
}

TEST(SvgDocument, it_is_loaded_as_a_drawing_of_its_own_size) {
    const Result<LoadedPicture> picture = ImageSource::load(svg("width='30.5' height='10'", {}));
    ASSERT_TRUE(picture);
    EXPECT_TRUE(picture->isDrawing);
    EXPECT_EQ(picture->image.size(), QSizeF(30.5, 10));
    ASSERT_EQ(picture->image.representations().size(), 1U);
    EXPECT_TRUE(picture->image.representations().front()->pixelSize().isEmpty());
    EXPECT_TRUE(picture->image.largestRaster().valueOr({}).isNull());
}

// Drawing.

TEST(SvgDocument, pixels_have_exactly_their_colours) {
    const QImage raster =
        drawn(svg("width='2' height='2'", "<rect width='1' height='1' fill='#f00'/>"
                                          "<rect x='1' width='1' height='1' fill='#0f0'/>"
                                          "<rect y='1' width='1' height='1' fill='#123456'/>"
                                          "<rect x='1' y='1' width='1' height='1' fill='#00f' "
                                          "fill-opacity='0.2'/>"));
    ASSERT_EQ(raster.size(), QSize(2, 2));
    ASSERT_EQ(raster.format(), QImage::Format_RGBA8888_Premultiplied);
    EXPECT_EQ(pixel(raster, 0, 0), red);
    EXPECT_EQ(pixel(raster, 1, 0), green);
    EXPECT_EQ(pixel(raster, 0, 1), (Pixel{0x12, 0x34, 0x56, 255}));
    EXPECT_EQ(pixel(raster, 1, 1), (Pixel{0, 0, 51, 51}));
}

TEST(SvgDocument, what_is_not_drawn_on_is_transparent) {
    EXPECT_TRUE(isClear(drawn(svg("width='5' height='3'", {}))));
}

TEST(SvgDocument, it_is_drawn_anew_at_each_size) {
    const QByteArray document =
        svg("width='10' height='10'", "<rect x='4' width='1' height='10' fill='#f00'/>");
    for (const int side : {10, 100, 1000, 3000}) {
        SCOPED_TRACE(side);
        const QImage raster = rendered(document, side, side);
        ASSERT_EQ(raster.size(), QSize(side, side));
        const int unit = side / 10;
        EXPECT_EQ(pixel(raster, 4 * unit - 1, side / 2), clear);
        EXPECT_EQ(pixel(raster, 4 * unit, side / 2), red);
        EXPECT_EQ(pixel(raster, 5 * unit - 1, side / 2), red);
        EXPECT_EQ(pixel(raster, 5 * unit, side / 2), clear);
    }
}

TEST(SvgDocument, it_is_stretched_as_a_whole) {
    const QImage raster = rendered(
        svg("width='10' height='10'", "<rect x='5' y='5' width='5' height='5' fill='#f00'/>"), 40, 20);
    ASSERT_EQ(raster.size(), QSize(40, 20));
    EXPECT_EQ(pixel(raster, 19, 10), clear);
    EXPECT_EQ(pixel(raster, 20, 9), clear);
    EXPECT_EQ(pixel(raster, 20, 10), red);
    EXPECT_EQ(pixel(raster, 39, 19), red);
}

TEST(SvgDocument, it_is_drawn_where_the_mapping_says) {
    const Result<std::shared_ptr<const SvgDocument>> document = SvgDocument::fromBytes(redSquare);
    ASSERT_TRUE(document);
    const QImage raster = *(*document)->rendered({0, 3, 4, 10}, {0, 1, 2, 5});
    ASSERT_EQ(raster.size(), QSize(10, 5));
    EXPECT_EQ(pixel(raster, 2, 1), clear);
    EXPECT_EQ(pixel(raster, 3, 0), clear);
    EXPECT_EQ(pixel(raster, 3, 1), red);
    EXPECT_EQ(pixel(raster, 6, 2), red);
    EXPECT_EQ(pixel(raster, 7, 2), clear);
    EXPECT_EQ(pixel(raster, 6, 3), clear);
}

TEST(SvgDocument, a_view_box_of_another_shape_lies_in_the_middle) {
    const QImage raster = drawn(svg("width='20' height='10' viewBox='100 100 5 5'",
                                    "<rect x='100' y='100' width='5' height='5' fill='#0f0'/>"));
    ASSERT_EQ(raster.size(), QSize(20, 10));
    EXPECT_EQ(pixel(raster, 4, 5), clear);
    EXPECT_EQ(pixel(raster, 5, 0), green);
    EXPECT_EQ(pixel(raster, 14, 9), green);
    EXPECT_EQ(pixel(raster, 15, 5), clear);
}

TEST(SvgDocument, clip_paths_are_drawn) {
    const QImage raster = drawn(svg("width='10' height='10'",
                                    "<clipPath id='c'><rect x='2' y='2' width='4' height='4'/></clipPath>"
                                    "<rect width='10' height='10' fill='#f00' clip-path='url(#c)'/>"));
    ASSERT_EQ(raster.size(), QSize(10, 10));
    EXPECT_EQ(pixel(raster, 1, 3), clear);
    EXPECT_EQ(pixel(raster, 2, 2), red);
    EXPECT_EQ(pixel(raster, 5, 5), red);
    EXPECT_EQ(pixel(raster, 6, 5), clear);
}

TEST(SvgDocument, gradients_are_drawn) {
    const QImage raster =
        drawn(svg("width='100' height='2'", "<linearGradient id='g'><stop offset='0' stop-color='#f00'/>"
                                            "<stop offset='1' stop-color='#00f'/></linearGradient>"
                                            "<rect width='100' height='2' fill='url(#g)'/>"));
    ASSERT_EQ(raster.size(), QSize(100, 2));
    expectNear(pixel(raster, 0, 0), {254, 0, 1, 255}, 2);
    expectNear(pixel(raster, 50, 0), {127, 0, 128, 255}, 3);
    expectNear(pixel(raster, 99, 1), {1, 0, 254, 255}, 2);
}

TEST(SvgDocument, masks_are_drawn) {
    const QImage raster =
        drawn(svg("width='10' height='10'", "<mask id='m'><rect width='5' height='10' fill='#fff'/>"
                                            "<rect x='5' width='5' height='5' fill='#808080'/></mask>"
                                            "<rect width='10' height='10' fill='#00f' mask='url(#m)'/>"));
    ASSERT_EQ(raster.size(), QSize(10, 10));
    EXPECT_EQ(pixel(raster, 0, 0), blue);
    EXPECT_EQ(pixel(raster, 4, 9), blue);
    expectNear(pixel(raster, 7, 2), {0, 0, 128, 128}, 2);
    EXPECT_EQ(pixel(raster, 7, 7), clear);
}

TEST(SvgDocument, colours_are_premultiplied) {
    const QImage raster =
        drawn(svg("width='1' height='1'", "<rect width='1' height='1' fill='#ff8000' opacity='0.4'/>"));
    ASSERT_EQ(raster.size(), QSize(1, 1));
    expectNear(pixel(raster, 0, 0), {102, 51, 0, 102}, 1);
}

// The bytes.

TEST(SvgDocument, a_byte_order_mark_is_passed_over) {
    expectRedSquare("\xef\xbb\xbf" + redSquare);
}

TEST(SvgDocument, what_may_stand_before_the_root_may_stand_there) {
    expectRedSquare("<?xml version='1.0' encoding='UTF-8' standalone='no'?>\n" + redSquare);
    expectRedSquare("<!-- made by hand -->\n" + redSquare);
    expectRedSquare("\n\n  " + redSquare);
    expectRedSquare("<?xml version='1.0'?><!-- one --><?instruction here?>\n<!-- two -->" + redSquare +
                    "\n<!-- end -->\n");
    expectRedSquare("<!--" + QByteArray(5000, 'x') + "-->" + redSquare);
}

TEST(SvgDocument, a_prefix_before_its_names_is_allowed) {
    expectRedSquare("<s:svg xmlns:s='http://www.w3.org/2000/svg' width='4' height='4'>"
                    "<s:rect width='4' height='4' fill='#f00'/></s:svg>");
}

TEST(SvgDocument, other_encodings_are_read) {
    expectRedSquare(utf16("<?xml version='1.0' encoding='UTF-16'?>" + redSquare, QStringConverter::Utf16LE));
    expectRedSquare(utf16("<?xml version='1.0' encoding='UTF-16'?>" + redSquare, QStringConverter::Utf16BE));
    expectRedSquare("<?xml version='1.0' encoding='ISO-8859-1'?><!-- \xe4 -->" + redSquare);
}

TEST(SvgDocument, it_may_be_compressed) {
    expectRedSquare(gzip(redSquare));
    const Result<LoadedPicture> picture = ImageSource::load(gzip(redSquare));
    ASSERT_TRUE(picture);
    EXPECT_TRUE(picture->isDrawing);
}

TEST(SvgDocument, a_compressed_document_cut_off_at_any_byte_is_an_error) {
    expectNeedsEveryByte(gzip(redSquare));
}

TEST(SvgDocument, compressed_data_that_are_no_document_are_an_error) {
    EXPECT_FALSE(ImageSource::load(gzip("This is no document.")));
    EXPECT_FALSE(ImageSource::load(gzip({})));
    QByteArray damaged = gzip(redSquare);
    damaged[damaged.size() - 6] = static_cast<char>(damaged[damaged.size() - 6] ^ 1); // the check sum
    EXPECT_FALSE(ImageSource::load(damaged));
}

TEST(SvgDocument, a_small_file_that_unpacks_to_a_huge_one_is_refused) {
    expectError(gzip(QByteArray(qsizetype{65} << 20, ' ')), ErrorCode::TooLarge);
}

TEST(SvgDocument, a_document_cut_off_at_any_byte_is_an_error) {
    expectNeedsEveryByte("<?xml version='1.0'?>\n<!-- x -->\n" + redSquare);
}

TEST(SvgDocument, what_is_not_well_formed_is_an_error) {
    expectError("<svg xmlns='http://www.w3.org/2000/svg' width='4' height='4'><rect></svg>",
                ErrorCode::Damaged);
    expectError(svg("width='4' height='4'", "&undeclared;"), ErrorCode::Damaged);
    expectError(redSquare + "trailing text", ErrorCode::Damaged);
}

TEST(SvgDocument, a_root_that_is_no_svg_element_is_an_error) {
    EXPECT_FALSE(
        ImageSource::load("<html><svg xmlns='http://www.w3.org/2000/svg' width='4' height='4'/></html>"));
}

// Nothing outside of the document is opened.

TEST(SvgDocument, a_document_that_declares_an_external_entity_is_refused) {
    const QByteArray root = svg("width='4' height='4'", {});
    const QList<QByteArray> declarations = {
        "<!ENTITY e SYSTEM \"file:///etc/hostname\">",
        "<!ENTITY e SYSTEM 'e.txt'>",
        "<!ENTITY e\n\tSYSTEM\n'e.txt'>",
        "<!ENTITY e PUBLIC \"-//X//Y\" \"http://example.org/e\">",
        "<!ENTITY % e SYSTEM \"e.dtd\">",
        "<!ENTITY % e PUBLIC '-//X//Y' 'e.dtd'>",
        "<!ENTITY a \"internal\"><!ENTITY e SYSTEM \"e.txt\">",
        "<!ENTITY a \"<!-- > -->\"><!ENTITY e SYSTEM \"e.txt\">",
        "<!-- \" --><!ENTITY e SYSTEM \"e.txt\">",
        "<!NOTATION n SYSTEM \"n\"><!ENTITY e SYSTEM \"e.txt\" NDATA n>",
    };
    for (const QByteArray& declaration : declarations) {
        SCOPED_TRACE(declaration.constData());
        const QByteArray document = "<!DOCTYPE svg [" + declaration + "]>" + root;
        expectError(document, ErrorCode::Unsupported);
        expectError("<?xml version='1.0' encoding='UTF-8'?>\n<!-- first -->\n" + document,
                    ErrorCode::Unsupported);
        expectError(gzip(document), ErrorCode::Unsupported);
        expectError(utf16("<?xml version='1.0' encoding='UTF-16'?>" + document, QStringConverter::Utf16LE),
                    ErrorCode::Unsupported);
    }
}

TEST(SvgDocument, an_external_entity_does_not_hide_behind_an_unusual_declaration) {
    const QByteArray document =
        "<!DOCTYPE svg [<!ENTITY e SYSTEM \"file:///etc/hostname\">]>" + svg("width='4' height='4'", {});
    EXPECT_FALSE(ImageSource::load("<?xml version='1.0' encoding='ISO-8859-2'?>" + document));
    EXPECT_FALSE(ImageSource::load("<?xml version='1.0' encoding='windows-1252'?>" + document));
    EXPECT_FALSE(ImageSource::load("<?xml version='1.1'?>" + document));
    EXPECT_FALSE(ImageSource::load("<!DOCTYPE svg [%undeclared;<!ENTITY e SYSTEM \"e.txt\">]>" +
                                   svg("width='4' height='4'", {})));
}

TEST(SvgDocument, a_document_type_with_a_public_name_is_allowed) {
    expectRedSquare("<!DOCTYPE svg PUBLIC \"-//W3C//DTD SVG 1.1//EN\" "
                    "\"http://www.w3.org/Graphics/SVG/1.1/DTD/svg11.dtd\">" +
                    redSquare);
}

TEST(SvgDocument, the_file_of_a_document_type_is_not_opened) {
    const Folder folder;
    folder.write("type.dtd",
                 "<!ENTITY content \"<rect xmlns='http://www.w3.org/2000/svg' width='4' height='4'/>\">");
    const QByteArray start = "<!DOCTYPE svg SYSTEM \"" + folder.url("type.dtd") + "\">";
    expectRedSquare(start + redSquare);
    const Result<DecodedPicture> picture =
        ImageSource::decode(start + svg("width='4' height='4'", "&content;"));
    EXPECT_TRUE(!picture || isClear(picture->raster));
}

TEST(SvgDocument, an_entity_that_declares_an_external_one_opens_nothing) {
    const Folder folder;
    folder.write("content.xml", "<rect xmlns='http://www.w3.org/2000/svg' width='4' height='4'/>");
    const Result<DecodedPicture> picture =
        ImageSource::decode("<!DOCTYPE svg [<!ENTITY % p \"&#60;!ENTITY e SYSTEM '" +
                            folder.url("content.xml") + "'>\"> %p;]>" + svg("width='4' height='4'", "&e;"));
    EXPECT_TRUE(!picture || isClear(picture->raster));
}

TEST(SvgDocument, entities_that_multiply_end_soon) {
    QByteArray entities = "<!ENTITY a0 '<g/><g/><g/><g/><g/><g/><g/><g/><g/><g/>'>";
    for (int i = 1; i < 10; ++i) {
        const QByteArray before = "&a" + QByteArray::number(i - 1) + ";";
        entities += "<!ENTITY a" + QByteArray::number(i) + " '" + before.repeated(10) + "'>";
    }
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(
        ImageSource::load("<!DOCTYPE svg [" + entities + "]>" + svg("width='4' height='4'", "&a9;")));
    EXPECT_LT(timer.elapsed(), 1000 * slowness);
}

TEST(SvgDocument, a_picture_in_the_document_is_drawn_and_one_outside_is_not) {
    const Folder folder;
    const QByteArray png = *encodePng(Pictures::flat(4, 4, QColor(255, 0, 0)));
    folder.write("picture.png", png);
    const auto document = [](const QByteArray& attribute, const QByteArray& link) {
        return svg("width='4' height='4'", "<image width='4' height='4' " + attribute + "='" + link + "'/>");
    };
    for (const QByteArray& attribute : {QByteArray("href"), QByteArray("xlink:href")}) {
        expectRedSquare(document(attribute, "data:image/png;base64," + png.toBase64()));
        for (const QByteArray& link :
             {folder.url("picture.png"), folder.path("picture.png"), QByteArray("picture.png"),
              "file://localhost" + folder.path("picture.png")}) {
            SCOPED_TRACE(link.constData());
            EXPECT_TRUE(isClear(drawn(document(attribute, link))));
        }
    }
}

TEST(SvgDocument, an_outside_picture_is_not_drawn_from_the_folder_of_the_file_either) {
    const Folder folder;
    folder.write("picture.png", *encodePng(Pictures::flat(4, 4, QColor(255, 0, 0))));
    folder.write("document.svg",
                 svg("width='4' height='4'", "<image width='4' height='4' href='picture.png'/>"));
    const Result<LoadedPicture> picture = ImageSource::loadFile(folder.path("document.svg").toStdString());
    ASSERT_TRUE(picture);
    EXPECT_TRUE(isClear(*picture->image.representations().front()->rendered({0, 0, 4, 4}, {0, 0, 4, 4})));
}

TEST(SvgDocument, other_documents_are_not_included) {
    const Folder folder;
    folder.write("other.svg",
                 svg("width='4' height='4' id='all'", "<rect id='part' width='4' height='4' fill='#f00'/>"));
    folder.write("style.css", "rect { fill: #f00; }");
    const QByteArray file = folder.url("other.svg");
    const QByteArray include = "<xi:include xmlns:xi='http://www.w3.org/2001/XInclude' href='";
    for (const QByteArray& content :
         {"<use href='" + file + "#part'/>", "<image width='4' height='4' href='" + file + "'/>",
          include + file + "'/>", include + folder.path("other.svg") + "' parse='xml'/>",
          "<rect width='4' height='4' fill='url(" + file + "#part) none'/>",
          "<style>@import url('" + folder.url("style.css") +
              "');</style><rect width='4' height='4' fill='none'/>"}) {
        SCOPED_TRACE(content.constData());
        EXPECT_TRUE(isClear(drawn(svg("width='4' height='4'", content))));
    }
    const QByteArray sheet = "<?xml-stylesheet type='text/css' href='" + folder.url("style.css") + "'?>";
    EXPECT_TRUE(
        isClear(drawn(sheet + svg("width='4' height='4'", "<rect width='4' height='4' fill='none'/>"))));
}

TEST(SvgDocument, an_included_text_is_not_read) {
    const Folder folder;
    folder.write("text.txt", "rect { fill: #f00; }");
    const QByteArray document =
        svg("width='4' height='4'",
            "<style><xi:include xmlns:xi='http://www.w3.org/2001/XInclude' parse='text' href='" +
                folder.url("text.txt") + "'/></style><rect width='4' height='4' fill='none'/>");
    EXPECT_TRUE(isClear(drawn(document)));
}
