#include "imaging/icns/IcnsWriter.h"
#include "imaging/ico/IcoWriter.h"
#include "imaging/png/PngWriter.h"
#include "project/proof/ProofPictures.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;

TEST(ProofPictures, a_png_files_bytes_are_kept) {
    const QImage raster = Pictures::translucentNoise(17, 5, 1);
    const QByteArray png = *encodePng(raster);
    const Result<ProofPictures> found = proofPictures(png);
    ASSERT_TRUE(found);
    ASSERT_EQ(found->pictures.size(), 1U);
    EXPECT_EQ(found->pictures.front().bytes, png);
    EXPECT_TRUE(Pictures::same(found->pictures.front().raster, raster));
}

TEST(ProofPictures, all_pictures_of_a_windows_icon_are_shown_smallest_first) {
    std::vector<QImage> rasters;
    for (const int side : {16, 47, 256, 20})
        rasters.push_back(Pictures::translucentNoise(side, side, static_cast<unsigned>(side)));
    const Result<ProofPictures> found = proofPictures(*encodeIco(rasters));
    ASSERT_TRUE(found) << found.error().sentence.toStdString();
    ASSERT_EQ(found->pictures.size(), rasters.size());
    std::ranges::sort(rasters, {}, &QImage::width);
    for (std::size_t i = 0; i < rasters.size(); ++i) {
        EXPECT_TRUE(Pictures::same(found->pictures[i].raster, rasters[i])) << i;
        const Result<ProofPictures> again = proofPictures(found->pictures[i].bytes);
        ASSERT_TRUE(again);
        EXPECT_TRUE(Pictures::same(again->pictures.front().raster, rasters[i])) << i;
    }
}

TEST(ProofPictures, a_windows_icon_that_breaks_off_is_damaged) {
    const QByteArray ico = *encodeIco({Pictures::noise(16, 16, 1), Pictures::noise(256, 256, 2)});
    for (qsizetype length = 8; length < ico.size(); length += 97) {
        const Result<ProofPictures> found = proofPictures(ico.first(length));
        ASSERT_FALSE(found) << length;
        EXPECT_EQ(found.error().code, ErrorCode::Damaged) << length;
    }
}

TEST(ProofPictures, each_element_of_an_icns_file_is_shown_and_png_files_are_kept) {
    IcnsWriter writer;
    ASSERT_TRUE(writer.addImage(Pictures::noise(128, 128, 3)));
    ASSERT_TRUE(writer.addImage(Pictures::noise(16, 16, 4)));
    const QByteArray icns = writer.data();
    const Result<ProofPictures> found = proofPictures(icns);
    ASSERT_TRUE(found);
    ASSERT_EQ(found->pictures.size(), 2U);
    EXPECT_EQ(found->pictures[0].element, FourCharCode("ic07"));
    EXPECT_TRUE(icns.contains(found->pictures[0].bytes));
    EXPECT_EQ(found->pictures[1].element, FourCharCode("is32"));
    EXPECT_TRUE(Pictures::same(found->pictures[1].raster, Pictures::noise(16, 16, 4)));
}

TEST(ProofPictures, an_svg_document_is_drawn_at_a_size_of_its_own) {
    const QByteArray svg("<svg xmlns='http://www.w3.org/2000/svg' width='40' height='20'><rect width='40' "
                         "height='20' fill='red'/></svg>");
    const Result<ProofPictures> found = proofPictures(svg);
    ASSERT_TRUE(found) << found.error().sentence.toStdString();
    EXPECT_EQ(found->pictures.front().size(), QSize(128, 64));
    EXPECT_EQ(found->pictures.front().bytes, svg);
    EXPECT_TRUE(found->pictures.front().isDrawing);
}

TEST(ProofPictures, texts_are_none) {
    for (const char* text : {"", "{\"images\": []}", "<html></html>", "<resources/>", "#include"})
        EXPECT_FALSE(isProofPicture(text)) << text;
    EXPECT_TRUE(isProofPicture("<?xml version='1.0'?><svg xmlns='http://www.w3.org/2000/svg'/>"));
}
