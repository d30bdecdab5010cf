#include "generation/Platforms.h"
#include "tests/support/Text.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <limits>
#include <set>

namespace {

QStringList idioms(std::span<const Platform> platforms) {
    QStringList words;
    for (const Platform platform : platforms)
        words << Platforms::idiom(platform);
    return words;
}

} // namespace

TEST(Platforms, are_those_of_the_catalogue_in_its_order) {
    EXPECT_EQ(idioms(Platforms::all),
              QStringList({text("iphone"), text("ipad"), text("watch"), text("mac"), text("android")}));
    int number = 0;
    for (const Platform platform : Platforms::all)
        EXPECT_EQ(static_cast<int>(platform), number++);
}

TEST(Platforms, each_index_has_its_word_and_its_idioms_in_order) {
    const std::pair<const char*, QStringList> expected[] = {
        {"iphone", {text("iphone")}}, {"ipad", {text("ipad")}}, {"universal", {text("iphone"), text("ipad")}},
        {"watch", {text("watch")}},   {"mac", {text("mac")}},   {"android", {text("android")}},
    };
    ASSERT_EQ(Platforms::choices().size(), std::size(expected));
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        const Platforms::Choice& choice = Platforms::choices()[i];
        EXPECT_STREQ(choice.word, expected[i].first);
        EXPECT_EQ(idioms(choice.platforms), expected[i].second) << i;
        EXPECT_EQ(idioms(Platforms::ofIndex(static_cast<int>(i))), expected[i].second) << i;
    }
}

TEST(Platforms, an_index_without_a_choice_acts_as_0) {
    for (const int index : {-1, -2, 6, 7, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        EXPECT_EQ(idioms(Platforms::ofIndex(index)), QStringList(text("iphone"))) << index;
}

TEST(Platforms, each_is_a_choice_of_its_own) {
    std::set<int> indexes;
    for (const Platform platform : Platforms::all) {
        const int index = Platforms::indexOf(platform);
        EXPECT_EQ(idioms(Platforms::ofIndex(index)), QStringList(Platforms::idiom(platform)));
        indexes.insert(index);
    }
    EXPECT_EQ(indexes, (std::set<int>{0, 1, 3, 4, 5}));
}

TEST(Platforms, each_idiom_has_its_folder) {
    EXPECT_EQ(Platforms::folder(text("iphone")), text("iphone/AppIcon.appiconset"));
    EXPECT_EQ(Platforms::folder(text("ipad")), text("ipad/AppIcon.appiconset"));
    EXPECT_EQ(Platforms::folder(text("watch")), text("watch/AppIcon.appiconset"));
    EXPECT_EQ(Platforms::folder(text("mac")), text("mac/AppIcon.appiconset"));
    EXPECT_EQ(Platforms::folder(text("android")), text("android/icons"));
}

TEST(Platforms, any_other_word_has_the_usual_folder) {
    for (const char* word : {"", "Android", "android ", "%1", "a/b"})
        EXPECT_EQ(Platforms::folder(text(word)), text(word) + text("/AppIcon.appiconset"));
}

TEST(Platforms, the_mac_alone_has_a_container) {
    for (const Platform platform : Platforms::all)
        EXPECT_EQ(Platforms::hasContainer(platform), platform == Platform::Mac);
}
