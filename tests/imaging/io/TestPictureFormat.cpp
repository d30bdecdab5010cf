#include "imaging/io/PictureFormat.h"
#include "tests/support/Fixtures.h"

#include <gtest/gtest.h>

namespace {

std::optional<PictureFormat> formatOf(const QByteArray& bytes) {
    const PictureFormatRow* row = PictureFormats::find(bytes);
    return row != nullptr ? std::optional(row->format) : std::nullopt;
}

} // namespace

TEST(PictureFormat, each_format_is_told_by_how_its_files_begin) {
    EXPECT_EQ(formatOf(fixture("rgb-8.png")), PictureFormat::Png);
    EXPECT_EQ(formatOf(QByteArray("\xff\xd8\xff\xe0")), PictureFormat::Jpeg);
    for (const QByteArray& start : {QByteArray("II\x2a\0", 4), QByteArray("MM\0\x2a", 4),
                                    QByteArray("II\x2b\0", 4), QByteArray("MM\0\x2b", 4)})
        EXPECT_EQ(formatOf(start), PictureFormat::Tiff) << start.toHex().constData();
    EXPECT_EQ(formatOf("GIF87a"), PictureFormat::Gif);
    EXPECT_EQ(formatOf("GIF89a"), PictureFormat::Gif);
    EXPECT_EQ(formatOf(fixture("rgb-24.bmp")), PictureFormat::Bmp);
    EXPECT_EQ(formatOf(fixture("lossless.webp")), PictureFormat::WebP);
    EXPECT_EQ(formatOf("icns"), PictureFormat::Icns);
    EXPECT_EQ(formatOf("\x1f\x8b"), PictureFormat::Svg);
    EXPECT_EQ(formatOf(" <svg/>"), PictureFormat::Svg);
}

TEST(PictureFormat, a_start_counts_as_a_whole_and_only_at_the_beginning) {
    EXPECT_EQ(formatOf({}), std::nullopt);
    EXPECT_EQ(formatOf(QByteArray("\x89PNG\r\n\x1a", 7)), std::nullopt);
    EXPECT_EQ(formatOf("\xff\xd8"), std::nullopt);
    EXPECT_EQ(formatOf("II\x2a"), std::nullopt);
    EXPECT_EQ(formatOf(" GIF89a"), std::nullopt);
    EXPECT_EQ(formatOf("gif89a"), std::nullopt);
    EXPECT_EQ(formatOf("\x1f"), std::nullopt);
}

TEST(PictureFormat, the_length_in_a_riff_file_may_be_any) {
    EXPECT_EQ(formatOf(QByteArray("RIFF\0\0\0\0WEBP", 12)), PictureFormat::WebP);
    EXPECT_EQ(formatOf(QByteArray("RIFF\xff\xfe\xfd\xfcWEBP", 12)), PictureFormat::WebP);
    EXPECT_EQ(formatOf("RIFF????WAVE"), std::nullopt);
    EXPECT_EQ(formatOf("RIFF????WEB"), std::nullopt);
    EXPECT_EQ(formatOf("????????WEBP"), std::nullopt);
}

TEST(PictureFormat, only_a_text_with_an_svg_element_is_taken_for_a_document) {
    EXPECT_EQ(formatOf("<?xml version='1.0'?><svg/>"), PictureFormat::Svg);
    EXPECT_EQ(formatOf("\xef\xbb\xbf<svg/>"), PictureFormat::Svg);
    EXPECT_EQ(formatOf(QByteArray("\xff\xfe<\0s\0v\0g\0", 10)), PictureFormat::Svg);
    EXPECT_EQ(formatOf("<html/>"), std::nullopt);
    EXPECT_EQ(formatOf("<!DOCTYPE html><body><svg/></body>"), std::nullopt);
    EXPECT_EQ(formatOf("svg"), std::nullopt);
}

TEST(PictureFormat, png_and_jpeg_are_reduced_while_they_are_read) {
    EXPECT_NE(PictureFormats::find(fixture("rgb-8.png"))->readReduced, nullptr);
    EXPECT_NE(PictureFormats::find("\xff\xd8\xff")->readReduced, nullptr);
    EXPECT_EQ(PictureFormats::find("BM")->readReduced, nullptr);
}

TEST(PictureFormat, the_names_end_a_sentence) {
    EXPECT_EQ(PictureFormats::names(), QStringLiteral("PNG, JPEG, TIFF, GIF, BMP, WebP, ICO, icns or SVG"));
}
