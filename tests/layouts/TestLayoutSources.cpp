#include "layouts/LayoutSources.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

using Sides = std::vector<int>;

/// A source that remembers the sides of the icons for which it is loaded.
LayoutSources::Source remembering(Sides& sides) {
    return {QStringLiteral("picture.png"), [&sides](const ReducedCopies::Renders& renders) {
                for (const QSizeF& size : *renders.sizes)
                    sides.push_back(static_cast<int>(size.width()));
                std::ranges::sort(sides);
                LoadedPicture picture;
                picture.image = Pictures::loadedImage(Pictures::flat(8, 8, Qt::red));
                return Result<LoadedPicture>(picture);
            }};
}

void load(const QStringList& names, const LayoutSources& sources) {
    const Result<LayoutSet> set = LayoutSet::load(names, {}, QStringLiteral("App"));
    ASSERT_TRUE(set) << set.error().sentence.toStdString();
    QString failed;
    EXPECT_TRUE(loadedPictures(*set, {}, sources, failed)) << failed.toStdString();
}

} // namespace

TEST(LayoutSources, a_picture_is_loaded_for_the_files_that_it_is_drawn_on) {
    Sides main;
    Sides dark;
    Sides tinted;
    load({QStringLiteral("xcode-single")},
         {.main = remembering(main), .dark = remembering(dark), .tinted = remembering(tinted)});
    EXPECT_EQ(main, Sides{1024});
    EXPECT_EQ(dark, Sides{1024});
    EXPECT_EQ(tinted, Sides{1024});
}

TEST(LayoutSources, files_that_are_not_written_count_for_none) {
    Sides main;
    load({QStringLiteral("xcode-single")}, {.main = remembering(main)});
    EXPECT_EQ(main, Sides{1024});
}

TEST(LayoutSources, a_picture_that_is_not_given_is_drawn_by_another) {
    Sides all;
    load({QStringLiteral("android")}, {.main = remembering(all)});
    Sides main;
    Sides foreground;
    load({QStringLiteral("android")}, {.main = remembering(main), .foreground = remembering(foreground)});
    // Foreground and monochrome icons.
    EXPECT_EQ(foreground.size(), 10U);
    EXPECT_EQ(main.size() + foreground.size(), all.size());
    Sides others;
    Sides ownForeground;
    Sides monochrome;
    load({QStringLiteral("android")}, {.main = remembering(others),
                                       .foreground = remembering(ownForeground),
                                       .monochrome = remembering(monochrome)});
    EXPECT_EQ(others, main);
    EXPECT_EQ(ownForeground.size(), 5U);
    EXPECT_EQ(monochrome, ownForeground);
}

TEST(LayoutSources, a_picture_that_no_file_wants_is_loaded_for_none) {
    Sides main;
    Sides dark;
    load({QStringLiteral("android")}, {.main = remembering(main), .dark = remembering(dark)});
    EXPECT_EQ(dark, Sides());
}
