#include "imaging/io/ImageSource.h"

#include <gtest/gtest.h>

namespace {

std::string refusal(const QByteArray& bytes) {
    const Result<LoadedPicture> picture = ImageSource::load(bytes);
    EXPECT_FALSE(picture);
    if (picture)
        return {};
    EXPECT_EQ(picture.error().code, ErrorCode::UnknownFormat);
    return picture.error().sentence.toStdString();
}

/// The box that a file of ISO/IEC 14496-12 begins with.
QByteArray boxed(const char* brand) {
    return QByteArray("\0\0\0\x1c"
                      "ftyp",
                      8) +
           brand + QByteArray(16, '\0');
}

} // namespace

TEST(OtherKinds, documents_and_pictures_of_other_kinds_are_called_by_their_names) {
    const std::pair<QByteArray, const char*> kinds[] = {
        {"%PDF-1.7\n%\xe2\xe3\xcf\xd3\n", "not a picture but a PDF document; save it as SVG or PNG"},
        {"%!PS-Adobe-3.0 EPSF-3.0\n", "not a picture but a PostScript document; save it as SVG or PNG"},
        {QByteArray("\xc5\xd0\xd3\xc6\x1e\0\0\0", 8),
         "not a picture but an EPS document; save it as SVG or PNG"},
        {QByteArray("8BPS\0\1", 6), "not a picture but a PSD document; save it as PNG"},
        {boxed("avif"), "an AVIF picture is not read here; save it as PNG"},
        {boxed("heic"), "a HEIC picture is not read here; save it as PNG"},
        {boxed("mif1"), "a HEIC picture is not read here; save it as PNG"},
        {boxed("isom"), "not a picture but a video; save one frame as PNG"},
        {boxed("qt  "), "not a picture but a video; save one frame as PNG"},
        {"\x1a\x45\xdf\xa3webm", "not a picture but a video; save one frame as PNG"},
        {QByteArray("\0\0\0\x0cJXL \r\n\x87\n", 12), "a JPEG XL picture is not read here; save it as PNG"},
        {"\xff\x0a\xfa\x1f", "a JPEG XL picture is not read here; save it as PNG"},
        {QByteArray("\0\0\0\x0cjP  \r\n\x87\n", 12), "a JPEG 2000 picture is not read here; save it as PNG"},
        {QByteArray("\0\0\2\0\1\0", 6), "not a picture but a Windows cursor; save it as PNG"},
        {"PK\3\4\x14", "not a picture but a ZIP archive; unpack it and take the picture in it"},
        {"\x7f"
         "ELF\2\1\1",
         "not a picture but a program"},
        {"RIFF????WAVE", "not a picture but a sound"}};
    for (const auto& [bytes, sentence] : kinds)
        EXPECT_EQ(refusal(bytes), sentence);
}

TEST(OtherKinds, a_page_is_not_taken_for_the_drawing_in_it) {
    for (const char* page : {"<!DOCTYPE html>\n<p><svg/>", " <HTML><svg/></HTML>"})
        EXPECT_EQ(refusal(page), "not a picture but an HTML page; save the picture itself");
}

TEST(OtherKinds, text_is_called_text) {
    for (const char* text : {"Some words.\n", "{\"json\": 1}\r\n", "gr\xc3\xbc\xc3\x9f", "caf\xe9"})
        EXPECT_EQ(refusal(text), "not a picture but text");
}

TEST(OtherKinds, of_other_bytes_the_sentence_lists_what_is_read) {
    for (const QByteArray& bytes : {QByteArray(1000, '\0'), QByteArray("\1\2\3\4"), QByteArray("wo\0rds", 6)})
        EXPECT_EQ(refusal(bytes),
                  "not a picture of a known format (PNG, JPEG, TIFF, GIF, BMP, WebP, ICO, icns or SVG)");
}
