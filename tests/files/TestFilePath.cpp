#include "files/FilePath.h"
#include "tests/support/Text.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(FilePath, escapes_are_a_percent_sign_and_two_hexadecimal_digits) {
    EXPECT_EQ(*replacingPercentEscapes(text("/a%20b/%41%7e")), text("/a b/A~"));
    EXPECT_EQ(*replacingPercentEscapes(text("/%C3%A4")), text("/ä"));
}

TEST(FilePath, any_other_percent_sign_stays) {
    EXPECT_EQ(*replacingPercentEscapes(text("100%/50% off/%4/%zz/%")), text("100%/50% off/%4/%zz/%"));
    EXPECT_EQ(*replacingPercentEscapes(text("%%41")), text("%A"));
}

TEST(FilePath, escapes_are_replaced_once) {
    EXPECT_EQ(*replacingPercentEscapes(text("%2541")), text("%41"));
}

TEST(FilePath, a_NUL_or_invalid_UTF8_is_no_path) {
    EXPECT_FALSE(replacingPercentEscapes(text("/a%00b")));
    EXPECT_FALSE(replacingPercentEscapes(text("/a%ff")));
    EXPECT_FALSE(replacingPercentEscapes(text("/a%C3")));
    EXPECT_FALSE(replacingPercentEscapes(text("/a%ed%a0%80"))) << "a surrogate";
}

TEST(FilePath, the_last_component_is_deleted) {
    EXPECT_EQ(deletingLastPathComponent(text("/a/b/c")), text("/a/b"));
    EXPECT_EQ(deletingLastPathComponent(text("/a/b/")), text("/a"));
    EXPECT_EQ(deletingLastPathComponent(text("//mac/x")), text("//mac"));
    EXPECT_EQ(deletingLastPathComponent(text("/a")), text("/"));
    EXPECT_EQ(deletingLastPathComponent(text("a")), QString());
}

TEST(FilePath, a_component_is_appended_with_one_slash) {
    EXPECT_EQ(appendingPathComponent(text("/a"), text("b.png")), text("/a/b.png"));
    EXPECT_EQ(appendingPathComponent(text("/a/"), text("b.png")), text("/a/b.png"));
    EXPECT_EQ(appendingPathComponent(text("/"), text("b.png")), text("/b.png"));
    EXPECT_EQ(appendingPathComponent(QString(), text("b.png")), text("b.png"));
}

TEST(FilePath, a_name_loses_its_last_ending) {
    EXPECT_EQ(nameWithoutEnding(text("/a/logo.png")), text("logo"));
    EXPECT_EQ(nameWithoutEnding(text("logo.min.svg")), text("logo.min"));
    EXPECT_EQ(nameWithoutEnding(text("logo")), text("logo"));
    EXPECT_EQ(nameWithoutEnding(text(".hidden")), text(".hidden"));
    EXPECT_EQ(nameWithoutEnding(text("...")), text("...")) << "and not the folder above";
}

TEST(FilePath, urls_are_percent_encoded_with_a_slash_after_an_existing_folder) {
    const QTemporaryDir folder;
    EXPECT_EQ(fileUrlText(folder.path()), text("file://") + folder.path() + text("/"));
    EXPECT_EQ(fileUrlText(text("/nowhere/a b%ä#?")), text("file:///nowhere/a%20b%25%C3%A4%23%3F"));
}
