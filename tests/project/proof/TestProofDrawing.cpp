#include "project/proof/ProofDrawing.h"
#include "project/proof/ProofLayout.h"
#include "project/proof/ProofText.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

ProofIcon icon(const QImage& raster, std::vector<ProofCut> cuts = {}) {
    ProofIcon icon;
    icon.name = u"icon.png"_s;
    icon.picture.raster = raster;
    icon.cuts = std::move(cuts);
    return icon;
}

ProofSheet titledSheet(std::vector<ProofIcon> icons) {
    ProofSheet sheet;
    sheet.title = u"logo.svg"_s;
    sheet.groups.push_back({u"Icons"_s, {{QString(), std::move(icons)}}});
    return sheet;
}

/// Where the views of a sheet's only icon are, on one of its grounds.
std::vector<QRect> places(const ProofSheet& sheet, bool isDark) {
    const ProofLayout layout = *laidOut(sheet);
    const auto band =
        std::ranges::find_if(layout.bands, [](const ProofBand& one) { return one.icon != nullptr; });
    std::vector<QRect> rects;
    for (const PlacedView& placed : band->views)
        rects.emplace_back((isDark ? band->darkGround : band->lightGround).topLeft() + placed.place,
                           placed.view.size);
    return rects;
}

/// How many pixels of `text` are not transparent.
int inkOf(const QImage& text) {
    int count = 0;
    for (int y = 0; y < text.height(); ++y) {
        for (int x = 0; x < text.width(); ++x)
            count += qAlpha(text.pixel(x, y)) > 0 ? 1 : 0;
    }
    return count;
}

} // namespace

TEST(ProofDrawing, an_opaque_icon_stands_on_both_grounds_pixel_by_pixel) {
    const QImage raster = Pictures::noise(61, 33, 5);
    const ProofSheet sheet = titledSheet({icon(raster)});
    const QImage drawn = *drawnProof(sheet);
    for (const bool isDark : {false, true}) {
        const QRect place = places(sheet, isDark).front();
        EXPECT_TRUE(Pictures::same(drawn.copy(place), raster)) << isDark;
    }
}

TEST(ProofDrawing, a_transparent_icon_shows_the_ground) {
    const ProofSheet sheet = titledSheet({icon(Pictures::flat(64, 64, QColor(0, 0, 0, 0)))});
    const QImage drawn = *drawnProof(sheet);
    EXPECT_EQ(drawn.pixelColor(places(sheet, false).front().center()), QColor(0xf4, 0xf4, 0xf2));
    EXPECT_EQ(drawn.pixelColor(places(sheet, true).front().center()), QColor(0x1d, 0x1d, 0x1f));
}

TEST(ProofDrawing, an_enlarged_icon_has_squares_of_eight_pixels) {
    const QImage raster = Pictures::noise(48, 37, 6);
    const ProofSheet sheet = titledSheet({icon(raster)});
    const QImage drawn = *drawnProof(sheet);
    const QRect place = places(sheet, true)[1];
    for (int y = 0; y < place.height(); ++y) {
        for (int x = 0; x < place.width(); ++x)
            ASSERT_EQ(drawn.pixel(place.x() + x, place.y() + y), raster.pixel(x / 8, y / 8)) << x << ' ' << y;
    }
}

TEST(ProofDrawing, a_cut_takes_the_corners_and_leaves_the_middle) {
    const QImage raster = Pictures::noise(100, 100, 7);
    const ProofSheet sheet = titledSheet({icon(raster, {ProofCut::Circle})});
    const QImage drawn = *drawnProof(sheet);
    const QRect place = places(sheet, false)[1];
    EXPECT_EQ(drawn.pixelColor(place.topLeft()), QColor(0xf4, 0xf4, 0xf2));
    EXPECT_EQ(drawn.pixelColor(place.bottomRight()), QColor(0xf4, 0xf4, 0xf2));
    const QRect middle(25, 25, 50, 50);
    EXPECT_TRUE(Pictures::same(drawn.copy(middle.translated(place.topLeft())), raster.copy(middle)));
}

TEST(ProofDrawing, a_layers_ground_shows_where_it_is_cut) {
    ProofIcon layer = icon(Pictures::flat(108, 108, QColor(0, 0, 0, 0)), {ProofCut::Circle});
    layer.cutPart = ProofShapes::adaptiveCut;
    layer.ground = Color{0, 0, 1, 1};
    const ProofSheet sheet = titledSheet({layer});
    const QImage drawn = *drawnProof(sheet);
    const QRect place = places(sheet, false)[1];
    EXPECT_EQ(place.size(), QSize(72, 72));
    EXPECT_EQ(drawn.pixelColor(place.center()), QColor(0, 0, 255));
    EXPECT_EQ(drawn.pixelColor(place.topLeft()), QColor(0xf4, 0xf4, 0xf2));
}

TEST(ProofDrawing, the_ring_of_the_safe_zone_is_drawn_where_it_is) {
    ProofIcon maskable = icon(Pictures::flat(192, 192, Qt::black));
    maskable.safePart = ProofShapes::maskableSafe;
    const ProofSheet sheet = titledSheet({maskable});
    const QImage drawn = *drawnProof(sheet);
    const QRect place = places(sheet, false)[1];
    const auto isBlack = [&](double x, double y) {
        return drawn.pixelColor(place.topLeft() + QPoint(static_cast<int>(x), static_cast<int>(y))) ==
               QColor(Qt::black);
    };
    EXPECT_FALSE(isBlack(96 + 0.4 * 192, 96));
    EXPECT_FALSE(isBlack(96, 96 - 0.4 * 192));
    EXPECT_TRUE(isBlack(96 + 0.4 * 192 - 4, 96));
    EXPECT_TRUE(isBlack(96 + 0.4 * 192 + 4, 96));
}

TEST(ProofDrawing, large_icons_have_grounds_one_below_the_other) {
    const ProofSheet sheet = titledSheet({icon(Pictures::flat(1500, 600, Qt::red))});
    const QRect light = places(sheet, false).front();
    const QRect dark = places(sheet, true).front();
    EXPECT_EQ(light.x(), dark.x());
    EXPECT_GE(dark.top(), light.bottom());
    EXPECT_GT(laidOut(sheet)->size.width(), light.right());
}

TEST(ProofDrawing, no_view_or_caption_covers_another) {
    const std::vector cuts{ProofCut::Circle, ProofCut::RoundedSquare, ProofCut::Teardrop};
    for (const int side : {1, 36, 48, 72, 96, 144, 192, 288}) {
        const ProofSheet sheet = titledSheet({icon(Pictures::flat(side, side, Qt::red), cuts)});
        const std::vector<QRect> rects = places(sheet, false);
        const ProofLayout layout = *laidOut(sheet);
        for (std::size_t i = 0; i < rects.size(); ++i) {
            for (std::size_t j = 0; j < i; ++j)
                EXPECT_FALSE(rects[i].intersects(rects[j])) << side;
        }
        const auto band =
            std::ranges::find_if(layout.bands, [](const ProofBand& one) { return one.icon != nullptr; });
        for (const QRect& rect : rects)
            EXPECT_TRUE(band->lightGround.contains(rect)) << side;
    }
}

TEST(ProofDrawing, the_same_sheet_gives_the_same_pixels) {
    const ProofSheet sheet = titledSheet({icon(Pictures::translucentNoise(40, 40, 8), {ProofCut::Squircle})});
    EXPECT_TRUE(Pictures::same(*drawnProof(sheet), *drawnProof(sheet)));
}

TEST(ProofDrawing, text_is_cut_off_at_its_edge_and_not_misread) {
    const QImage text =
        *drawnText({{{0, 14}, u"a < b & \"c\" \u2013 \u56fe"_s, u"#000000"_s}}, QSize(200, 20));
    EXPECT_EQ(text.size(), QSize(200, 20));
    EXPECT_GT(inkOf(text), 30);
    EXPECT_EQ(inkOf(*drawnText({}, QSize(200, 20))), 0);
}

TEST(ProofDrawing, names_are_broken_behind_their_punctuation) {
    EXPECT_EQ(wrappedText(u"ic_launcher_foreground.png"_s, 16),
              (QStringList{u"ic_launcher_"_s, u"foreground.png"_s}));
    EXPECT_EQ(wrappedText(u"abcdefgh"_s, 3), (QStringList{u"abc"_s, u"def"_s, u"gh"_s}));
    EXPECT_EQ(wrappedText(u"\u56fe\u6807\u56fe"_s, 4), (QStringList{u"\u56fe\u6807"_s, u"\u56fe"_s}));
    EXPECT_EQ(wrappedText(QString(), 4), QStringList());
}

TEST(ProofDrawing, a_sheet_with_too_many_pixels_is_refused) {
    const ProofSheet sheet = titledSheet({icon(Pictures::flat(1, 999990, Qt::red))});
    const Result<QImage> drawn = drawnProof(sheet);
    ASSERT_FALSE(drawn);
    EXPECT_EQ(drawn.error().code, ErrorCode::TooLarge);
}
