#include "imaging/icns/IcnsInspection.h"
#include "imaging/icns/IcnsTypes.h"

#include <gtest/gtest.h>

namespace {

QString description(const char (&type)[5]) {
    return icnsTypeDescription(type);
}

} // namespace

TEST(IcnsTypes, pictures_with_more_pixels_come_first) {
    int previous = 1024;
    for (const IcnsElementType& type : icnsElementTypes()) {
        if (type.content == IcnsContent::Mask)
            continue;
        EXPECT_LE(type.pixelSize, previous) << type.code.text().toStdString();
        previous = type.pixelSize;
    }
}

TEST(IcnsTypes, colours_have_a_mask_of_their_size) {
    for (const IcnsElementType& type : icnsElementTypes()) {
        if (type.content != IcnsContent::Colors) {
            EXPECT_EQ(type.mask, FourCharCode()) << type.code.text().toStdString();
            continue;
        }
        const IcnsElementType* mask = icnsElementType(type.mask);
        ASSERT_NE(mask, nullptr) << type.code.text().toStdString();
        EXPECT_EQ(mask->content, IcnsContent::Mask);
        EXPECT_EQ(mask->size(), type.size());
    }
}

TEST(IcnsTypes, a_type_is_described_in_points_with_its_scale) {
    EXPECT_EQ(description("ic10"), QStringLiteral("picture, 512 points @2x"));
    EXPECT_EQ(description("ic09"), QStringLiteral("picture, 512 points"));
    EXPECT_EQ(description("ic14"), QStringLiteral("picture, 256 points @2x"));
    EXPECT_EQ(description("ic13"), QStringLiteral("picture, 128 points @2x"));
    EXPECT_EQ(description("ic12"), QStringLiteral("picture, 32 points @2x"));
    EXPECT_EQ(description("ic11"), QStringLiteral("picture, 16 points @2x"));
    EXPECT_EQ(description("icsB"), QStringLiteral("picture, 18 points @2x"));
    EXPECT_EQ(description("icsb"), QStringLiteral("picture, 18 points"));
    EXPECT_EQ(description("SB24"), QStringLiteral("picture, 24 points @2x"));
    EXPECT_EQ(description("it32"), QStringLiteral("colours, 128 points"));
    EXPECT_EQ(description("s8mk"), QStringLiteral("mask, 16 points"));
    EXPECT_EQ(description("TOC "), QStringLiteral("table of contents"));
    EXPECT_EQ(description("none"), QStringLiteral("unknown"));
}

TEST(IcnsTypes, a_header_tells_its_code_and_length) {
    const IcnsHeader header = icnsHeader("ic07", 0x01020304);
    EXPECT_EQ(quint32{header.code}, 0x69633037U);
    EXPECT_EQ(quint32{header.length}, 0x01020304U);
}
