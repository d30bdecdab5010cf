#include "base/Suggestion.h"

#include <gtest/gtest.h>

TEST(Suggestion, the_nearest_word_needs_the_fewest_changes) {
    EXPECT_EQ(nearestWord("ipohne", {"iphone", "ipad", "watch"}), "iphone");
    EXPECT_EQ(nearestWord("ipbd", {"iphone", "watch", "ipad"}), "ipad");
    EXPECT_EQ(nearestWord("IPAD", {"iphone", "ipad", "watch"}), "ipad");
}

TEST(Suggestion, neighbours_that_changed_places_are_one_change) {
    EXPECT_EQ(nearestWord("wacth", {"iphone", "ipad", "watch"}), "watch");
    EXPECT_EQ(nearestWord("amc", {"iphone", "ipad", "mac"}), "mac");
}

TEST(Suggestion, a_word_that_needs_more_changes_than_a_third_of_its_letters_is_not_near) {
    EXPECT_EQ(nearestWord("abcdef", {"abcdxy"}), "abcdxy");
    EXPECT_EQ(nearestWord("abcdef", {"abcxyz"}), "");
    EXPECT_EQ(nearestWord("ab", {"ax"}), "");
    EXPECT_EQ(nearestWord("--background", {"--out", "--platform"}), "");
    EXPECT_EQ(nearestWord("x", {"ab", "cd"}), "");
    EXPECT_EQ(nearestWord("", {"ab", "cd"}), "");
    EXPECT_EQ(nearestWord("--", {"--out"}), "");
}

TEST(Suggestion, the_first_of_equals_wins) {
    EXPECT_EQ(nearestWord("abc", {"abd", "abe"}), "abd");
}

TEST(Suggestion, a_word_that_begins_so_is_nearer_than_any_that_is_changed) {
    EXPECT_EQ(nearestWord("--plat", {"--out", "--plate-x", "--flat", "--platform"}), "--plate-x");
    EXPECT_EQ(nearestWord("pla", {"pal", "platform"}), "platform");
    EXPECT_EQ(nearestWord("p", {"platform"}), "");
}

TEST(Suggestion, a_part_of_a_word_is_near_to_it) {
    EXPECT_EQ(nearestWord("orne", {"--out", "--round-corner"}), "--round-corner");
    EXPECT_EQ(nearestWord("macos", {"iphone", "mac"}), "mac");
    EXPECT_EQ(nearestWord("--output-folder", {"--open", "--out"}), "--out");
    EXPECT_EQ(nearestWord("applewatch", {"iphone", "watch"}), "watch");
    EXPECT_EQ(nearestWord("or", {"border"}), "");
}

TEST(Suggestion, a_part_between_dashes_is_nearer_than_a_word_that_is_changed) {
    EXPECT_EQ(nearestWord("--corner", {"--border", "--round-corner"}), "--round-corner");
}

TEST(Suggestion, another_part_is_less_near_than_a_word_that_is_changed) {
    EXPECT_EQ(nearestWord("order", {"border-color", "odder"}), "odder");
}

TEST(Suggestion, without_words_there_is_none) {
    EXPECT_EQ(nearestWord("x", {}), "");
    EXPECT_EQ(suggestion("x", {}), "");
}

TEST(Suggestion, a_complaint_ends_with_the_nearest_word_or_with_all) {
    EXPECT_EQ(suggestion("ipda", {"iphone", "ipad"}), "; did you mean 'ipad'?");
    EXPECT_EQ(suggestion("ipda", {"iphone", "ipad"}, '"'), "; did you mean \"ipad\"?");
    EXPECT_EQ(suggestion("zebra", {"iphone", "ipad", "mac"}), "; there are iphone, ipad and mac");
    EXPECT_EQ(suggestion("zebra", {"iphone"}), "; there is iphone");
}
