#include "layouts/LayoutReader.h"
#include "tests/support/Slowness.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace {

/// The sentence with which the layout is refused; empty if it is read.
std::string refusal(const QByteArray& toml) {
    const Result<ReadLayout> read = readLayout(QStringLiteral("test"), toml);
    return read ? std::string() : read.error().sentence.toStdString();
}

QByteArray withFile(const QByteArray& keys) {
    return "[[file]]\npath = \"a.png\"\n" + keys;
}

} // namespace

TEST(LayoutReader, the_keys_of_a_file_are_read) {
    const Result<ReadLayout> read = readLayout(QStringLiteral("test"), R"(
title = "A test"
marker = ["one", "two"]
one-ending = true
[[file]]
path = "res/a.png"
size = 48
picture = "foreground"
if-given = true
ground = true
shape = "rounded"
radius = 0.25
inset = "3/4"
slots = [{ idiom = "mac", size = "24x24", scale = "2x", more = [{ a = "b" }] }]
for = "something"
[[file]]
path = "app.ico"
sizes = [16, 256]
[[use]]
layout = "web"
at = "public"
without = ["icon.svg"]
[[note]]
file = "index.html"
line = "<link>"
)");
    ASSERT_TRUE(read) << read.error().sentence.toStdString();
    EXPECT_EQ(read->layout.title.toStdString(), "A test");
    EXPECT_EQ(read->layout.markers, QStringList({QStringLiteral("one"), QStringLiteral("two")}));
    ASSERT_EQ(read->layout.files.size(), 2U);
    const LayoutFile& file = read->layout.files[0];
    EXPECT_EQ(file.path.toStdString(), "res/a.png");
    EXPECT_EQ(file.format, LayoutFile::Format::Png);
    EXPECT_EQ(file.sizes, std::vector{QSize(48, 48)});
    EXPECT_EQ(file.picture, LayoutPicture::Foreground);
    EXPECT_TRUE(file.isOnlyIfGiven);
    EXPECT_TRUE(file.hasGround);
    EXPECT_FALSE(file.isOpaque);
    EXPECT_EQ(file.shape, LayoutFile::Shape::Rounded);
    EXPECT_EQ(file.radius, 0.25);
    EXPECT_EQ(file.inset, 0.75);
    ASSERT_EQ(file.places.size(), 1U);
    EXPECT_EQ(file.places[0].value(QStringLiteral("scale")).toString().toStdString(), "2x");
    EXPECT_TRUE(file.hasOneEnding);
    EXPECT_FALSE(read->layout.files[1].hasOneEnding) << "not below res";
    EXPECT_EQ(read->layout.files[1].sizes, (std::vector{QSize(16, 16), QSize(256, 256)}));
    ASSERT_EQ(read->uses.size(), 1U);
    EXPECT_EQ(read->uses[0].at.toStdString(), "public");
    ASSERT_EQ(read->layout.notes.size(), 1U);
}

TEST(LayoutReader, a_file_without_an_alpha_channel_has_a_ground) {
    const Result<ReadLayout> read =
        readLayout(QStringLiteral("test"), withFile("size = 9\nchannels = \"rgb\""));
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->layout.files[0].isOpaque);
    EXPECT_TRUE(read->layout.files[0].hasGround);
}

TEST(LayoutReader, what_is_wrong_is_told_with_its_place_and_the_nearest_word) {
    const std::pair<QByteArray, const char*> cases[] = {
        {"", "it has no files"},
        {"titel = 1", "there is no key \"titel\"; did you mean \"title\"?"},
        {"title = 1\n" + withFile("size = 1"), "\"title\" takes a text"},
        {"title", "line 1, column 6: "},
        {withFile("szie = 1"), "file 1 (a.png): there is no key \"szie\"; did you mean \"size\"?"},
        {withFile(""), "file 1 (a.png): \"size\" is missing"},
        {withFile("size = 0"), "file 1 (a.png): \"size\" takes a whole number from 1 to 16384"},
        {withFile("size = 20000"), "file 1 (a.png): \"size\" takes a whole number from 1 to 16384"},
        {withFile("size = \"large\""), "file 1 (a.png): \"size\" takes a whole number from 1 to 16384"},
        {withFile("size = 1.5"), "file 1 (a.png): \"size\" takes a whole number from 1 to 16384"},
        {withFile("size = 1\nformat = \"icon\""),
         "file 1 (a.png): there is no format \"icon\"; did you mean \"ico\"?"},
        {withFile("size = 1\nshape = \"oval\""),
         "file 1 (a.png): there is no shape \"oval\"; there are square, circle and rounded"},
        {withFile("size = 1\nshape = \"rounded\""), "file 1 (a.png): a rounded shape wants a \"radius\""},
        {withFile("size = 1\nchannels = \"rgb\"\nshape = \"circle\""),
         "file 1 (a.png): without an alpha channel the shape is a square"},
        {withFile("size = 1\ninset = \"1/0\""), "file 1 (a.png): \"inset\" takes a number above 0"},
        {withFile("size = 1\ninset = 2"), "file 1 (a.png): \"inset\" takes a number above 0"},
        {withFile("size = \"310\""), "file 1 (a.png): \"size\" takes a whole number from 1 to 16384, or two"},
        {withFile("size = \"310x0\""),
         "file 1 (a.png): \"size\" takes a whole number from 1 to 16384, or two"},
        {withFile("size = \"9x20000\""),
         "file 1 (a.png): \"size\" takes a whole number from 1 to 16384, or two"},
        {withFile("size = \"1x2x3\""),
         "file 1 (a.png): \"size\" takes a whole number from 1 to 16384, or two"},
        {withFile("size = 1\nslots = 3"), "file 1 (a.png): \"slots\" takes a list of tables"},
        {"[[file]]\npath = \"a.ico\"\nsizes = [16, 257]",
         "file 1 (a.ico): \"sizes\" takes a list, each a whole number"},
        {"[[file]]\npath = \"a.ico\"", "file 1 (a.ico): \"sizes\" is missing"},
        {"[[file]]\npath = \"a.txt\"", "file 1 (a.txt): \"text\" is missing"},
        {"[[file]]\npath = \"a.txt\"\ntext = \"\"\nkeep = true", "file 1 (a.txt): \"keep\" wants \"ours\""},
        {"[[file]]\nsize = 1", "file 1 (): \"path\" takes a path below the output folder"},
        {"[[use]]\nat = \"a\"", "use: \"layout\" is missing"},
        {"[[use]]\nlayout = \"web\"\nat = \"../a\"", "use: \"at\" takes a folder below the output folder"},
        {"[variable.a]\ndefault = \"b\"", "variable a: it wants either a \"folder\" or a \"file\""},
        {"[variable.a]\nfolder = \"b\"\ndefault = \"b\"", "variable a: \"folder\" takes a path below"},
        {"[variable.a]\nfile = \"b\"\npattern = \"(\"\ndefault = \"b\"",
         "variable a: \"pattern\" is no regular expression"},
        {"[variable.a]\nfile = \"b\"\npattern = \"c\"\ndefault = \"b\"",
         "variable a: \"pattern\" wants a group"},
        {"\xc3\xa9 = 1", "only strings and comments may have letters beyond ASCII"},
        {"title = \"a\" \xc3\xa9", "only strings and comments may have letters beyond ASCII"},
        {"title = '''a''''' \xc3\xa9", "only strings and comments may have letters beyond ASCII"},
        {"title = \"\xc3\xa9\\\"\xc3\xa9\" # \xc3\xa9", "it has no files"},
        {"title = \"\"\"\xc3\xa9\n\xc3\xa9\"\"\"", "it has no files"},
        {"file = 3", "\"file\" takes a list of tables"},
        {"\xef\xbb\xbf[[file]]\npath = 3", "file 1 (3): \"path\" takes a text"}};
    for (const auto& [toml, sentence] : cases)
        EXPECT_TRUE(refusal(toml).starts_with(sentence)) << toml.constData() << "\n" << refusal(toml);
}

TEST(LayoutReader, a_size_is_a_number_or_two_in_a_text) {
    const Result<ReadLayout> read =
        readLayout(QStringLiteral("name"),
                   "[[file]]\npath = 'a.png'\nsize = '310x150'\n[[file]]\npath = 'b.png'\nsize = 7");
    ASSERT_TRUE(read) << read.error().sentence.toStdString();
    EXPECT_EQ(read->layout.files[0].sizes, std::vector{QSize(310, 150)});
    EXPECT_EQ(read->layout.files[1].sizes, std::vector{QSize(7, 7)});
}

TEST(LayoutReader, paths_stay_in_the_folder) {
    for (const char* path :
         {"", "/a.png", "../a.png", "a/../../b.png", "a//b.png", "./a.png", "a/", "a\\\\b.png", "a\\u0000b"})
        EXPECT_NE(refusal("[[file]]\nsize = 1\nformat = \"png\"\npath = \"" + QByteArray(path) + "\"")
                      .find("takes a path below the output folder"),
                  std::string::npos)
            << path;
}

TEST(LayoutReader, hostile_documents_are_refused_within_a_second) {
    QByteArray nested = "a = ";
    nested += QByteArray(100000, '[');
    QByteArray dotted = "a";
    for (int i = 0; i < 100000; ++i)
        dotted += ".a";
    QByteArray tables;
    for (int i = 0; i < 100000; ++i)
        tables += "[a" + QByteArray::number(i) + "]\n";
    const QByteArray brackets(1 << 20, '{');
    for (const QByteArray& toml :
         {nested, dotted + " = 1", "[" + dotted + "]", tables, brackets, QByteArray(1 << 20, '\xff')}) {
        QElapsedTimer timer;
        timer.start();
        EXPECT_NE(refusal(toml), "") << toml.first(20).constData();
        EXPECT_LT(timer.elapsed(), 1000 * slowness) << toml.first(20).constData();
    }
}

TEST(LayoutReader, values_that_are_nested_too_deeply_are_told_in_plain_words) {
    for (const char* open : {"[", "{a="}) {
        const std::string sentence = refusal("a=" + QByteArray(open).repeated(1000));
        EXPECT_TRUE(sentence.ends_with(": values are nested too deeply")) << sentence;
    }
}
