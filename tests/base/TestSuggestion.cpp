#include "base/Suggestion.h"

#include <gtest/gtest.h>

TEST(Suggestion, the_nearest_word_needs_the_fewest_changes) {
    EXPECT_EQ(nearestWord("ipohne", {"iphone", "ipad", "watch"}), "iphone");
    EXPECT_EQ(nearestWord("wacth", {"iphone", "ipad", "watch"}), "watch");
    EXPECT_EQ(nearestWord("IPAD", {"iphone", "ipad", "watch"}), "ipad");
}

TEST(Suggestion, the_first_of_equals_wins) {
    EXPECT_EQ(nearestWord("x", {"ab", "cd"}), "ab");
}

TEST(Suggestion, without_words_there_is_none) {
    EXPECT_EQ(nearestWord("x", {}), "");
}

TEST(Suggestion, a_word_that_begins_so_is_nearer_than_any) {
    EXPECT_EQ(nearestWord("--plat", {"--out", "--platform"}), "--platform");
}
