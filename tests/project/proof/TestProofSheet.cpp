#include "project/proof/ProofSets.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using Kind = ProofView::Kind;

ProofIcon icon(int width, int height, std::vector<ProofCut> cuts = {}) {
    ProofIcon icon;
    icon.picture.raster = Pictures::flat(width, height, Qt::red);
    icon.cuts = std::move(cuts);
    return icon;
}

std::vector<Kind> kinds(const ProofIcon& icon) {
    std::vector<Kind> kinds;
    for (const ProofView& view : ProofViews::of(icon))
        kinds.push_back(view.kind);
    return kinds;
}

ProofSheet sheetOf(std::vector<ProofIcon> icons) {
    ProofSheet sheet;
    sheet.groups.push_back({u"Icons"_s, {{QString(), std::move(icons)}}});
    return sheet;
}

ProofIcon shaped(const LayoutFile& file) {
    ProofIcon icon;
    ProofSets::addShapes(file, Color{0, 0, 1, 1}, icon);
    return icon;
}

} // namespace

TEST(ProofSheet, icons_of_up_to_48_pixels_are_enlarged_eight_times) {
    EXPECT_EQ(kinds(icon(48, 48)), (std::vector{Kind::File, Kind::Enlarged}));
    EXPECT_EQ(ProofViews::of(icon(48, 31)).back().size, QSize(384, 248));
    EXPECT_EQ(kinds(icon(31, 49)), std::vector{Kind::File});
}

TEST(ProofSheet, an_icon_is_shown_at_its_true_size) {
    for (const QSize& size : {QSize(1, 1), QSize(29, 29), QSize(83, 167), QSize(1024, 1024)}) {
        const ProofView view = ProofViews::of(icon(size.width(), size.height())).front();
        EXPECT_EQ(view.size, size);
        EXPECT_EQ(view.part, QRect(QPoint(), size));
    }
}

TEST(ProofSheet, each_cut_is_a_view_until_it_is_large) {
    const std::vector cuts{ProofCut::Circle, ProofCut::Teardrop};
    EXPECT_EQ(kinds(icon(288, 288, cuts)), (std::vector{Kind::File, Kind::Cut, Kind::Cut}));
    EXPECT_FALSE(ProofViews::of(icon(288, 288, cuts)).front().hasGuides);
    EXPECT_EQ(kinds(icon(289, 289, cuts)), std::vector{Kind::File});
    EXPECT_TRUE(ProofViews::of(icon(289, 289, cuts)).front().hasGuides);
    EXPECT_FALSE(ProofViews::of(icon(289, 289)).front().hasGuides);
}

TEST(ProofSheet, of_an_adaptive_layer_the_middle_two_thirds_are_cut) {
    ProofIcon layer = icon(108, 108, {ProofCut::Circle});
    layer.cutPart = ProofShapes::adaptiveCut;
    layer.safePart = ProofShapes::adaptiveSafe;
    const std::vector<ProofView> views = ProofViews::of(layer);
    ASSERT_EQ(views.size(), 3U);
    EXPECT_EQ(views[1].kind, Kind::SafeZone);
    EXPECT_TRUE(views[1].hasGuides);
    EXPECT_EQ(views[2].part, QRect(18, 18, 72, 72));
    EXPECT_EQ(views[2].size, QSize(72, 72));
}

TEST(ProofSheet, a_cut_begins_at_a_whole_pixel) {
    ProofIcon layer = icon(1024, 1024);
    layer.cuts = {ProofCut::Circle};
    layer.cutPart = 0.25;
    layer.picture.raster = Pictures::flat(101, 51, Qt::red);
    EXPECT_EQ(ProofViews::of(layer)[1].part, QRect(38, 19, 25, 13));
}

TEST(ProofSheet, a_single_view_has_no_caption) {
    EXPECT_EQ(ProofViews::of(icon(64, 64)).front().caption, QString());
    EXPECT_EQ(ProofViews::of(icon(40, 40)).front().caption, u"file"_s);
}

TEST(ProofSheet, tells_how_many_icons_there_are_and_their_sizes) {
    EXPECT_EQ(sheetOf({icon(16, 16), icon(20, 512)}).facts(), u"2 icons, from 16 to 512 pixels"_s);
    EXPECT_EQ(sheetOf({icon(7, 7)}).facts(), u"1 icon, 7 pixels"_s);
    EXPECT_TRUE(sheetOf({}).isEmpty());
}

TEST(ProofSheet, the_legend_tells_of_nothing_that_is_not_there) {
    EXPECT_EQ(sheetOf({icon(64, 64)}).legend().size(), 1);
    EXPECT_EQ(sheetOf({icon(16, 16)}).legend().size(), 2);
    EXPECT_TRUE(sheetOf({icon(64, 64, {ProofCut::Squircle})}).legend().last().contains(u"iPhone"_s));
    EXPECT_TRUE(sheetOf({icon(512, 512, {ProofCut::Squircle})}).legend().last().contains(u"lines"_s));
}

TEST(ProofSheet, a_layouts_file_gets_the_shapes_of_its_system) {
    LayoutFile file;
    file.path = u"AppIcon.appiconset/a.png"_s;
    EXPECT_TRUE(shaped(file).cuts.empty());
    file.places = {QVariantMap{{u"idiom"_s, u"mac"_s}}};
    EXPECT_TRUE(shaped(file).cuts.empty());
    file.places = {QVariantMap{{u"idiom"_s, u"ipad"_s}}};
    EXPECT_EQ(shaped(file).cuts, std::vector{ProofCut::Squircle});
    file.places = {QVariantMap{{u"idiom"_s, u"universal"_s}, {u"platform"_s, u"watchos"_s}}};
    EXPECT_EQ(shaped(file).cuts, std::vector{ProofCut::Circle});
}

TEST(ProofSheet, layers_and_maskable_icons_have_a_safe_zone) {
    LayoutFile file;
    file.path = u"res/mipmap-mdpi/front.png"_s;
    file.picture = LayoutPicture::Foreground;
    EXPECT_DOUBLE_EQ(shaped(file).safePart, 66.0 / 108);
    EXPECT_DOUBLE_EQ(shaped(file).cutPart, 72.0 / 108);
    EXPECT_EQ(shaped(file).ground, (Color{0, 0, 1, 1}));
    EXPECT_EQ(shaped(file).cuts.size(), 3U);
    LayoutFile maskable;
    maskable.path = u"icons/Icon-maskable-192.png"_s;
    EXPECT_DOUBLE_EQ(shaped(maskable).safePart, 0.8);
    EXPECT_DOUBLE_EQ(shaped(maskable).cutPart, 1);
    EXPECT_FALSE(shaped(maskable).ground);
}
