#include "tests/cli/CliTest.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>

namespace {

using NameList = std::vector<std::string>;

class CatalogueOption : public CliTest {
  protected:
    /// Runs with a catalogue that a Python expression describes.
    ProcessResult generateBy(const QString& expression, const QStringList& more = {}) const {
        return generate(sample(u"svg"_s),
                        QStringList{u"--catalogue"_s, propertyList(u"sizes.plist"_s, expression)} + more);
    }
    void expectDone(const ProcessResult& result) const {
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(otherErrorLines(result), QStringList());
    }
};

const QString iphone = u"iphone/AppIcon.appiconset/"_s;

} // namespace

TEST_F(CatalogueOption, replaces_the_built_in_one) {
    const QString expression = u"[{'a': entry('phone', '{10, 10}')}, {'a': entry('pad', '{11, 11}')},"
                               " {'a': entry('watch', '{12, 12}')}, {'a': entry('mac', '{13, 13}')},"
                               " {'a': entry('robot', '{14, 14}')}]"_s;
    expectDone(generateBy(expression));
    EXPECT_EQ(found(),
              (NameList{"android/icons/robot.png 14 14", "ipad/AppIcon.appiconset/pad.png 11 11",
                        "iphone/AppIcon.appiconset/phone.png 10 10", "mac/AppIcon.appiconset/mac.png 13 13",
                        "watch/AppIcon.appiconset/watch.png 12 12"}));
    EXPECT_EQ(tree().size(), 6U) << "with the container";
}

TEST_F(CatalogueOption, takes_a_binary_property_list) {
    const QString catalogue =
        propertyList(u"b.plist"_s, u"[{'a': entry('a', '{10, 10}')}, {}, {}, {}, {}]"_s, true);
    EXPECT_TRUE(content(catalogue).startsWith("bplist00"));
    expectDone(generate(sample(u"svg"_s), {u"--catalogue"_s, catalogue, u"--platform"_s, u"iphone"_s}));
    EXPECT_EQ(found(), NameList{"iphone/AppIcon.appiconset/a.png 10 10"});
}

TEST_F(CatalogueOption, a_sixth_element_is_ignored) {
    const QString expression =
        u"[{'a': entry('a', '{10, 10}')}, {}, {}, {'m': entry('m', '{10, 10}')}, {}, %1]"_s;
    for (const QString& sixth : {u"{'x': entry('x', '{10, 10}')}"_s, u"{'x': {'Name': 1}}"_s, u"'text'"_s}) {
        expectDone(generateBy(expression.arg(sixth)));
        EXPECT_EQ(tree(), (NameList{"iphone/AppIcon.appiconset/a.png", "mac/AppIcon.appiconset/m.png",
                                    "mac/Application.icns"}));
    }
}

TEST_F(CatalogueOption, an_empty_platform_makes_neither_folder_nor_error) {
    const QString expression = u"[{}, {'a': entry('a', '{10, 10}')}, {}, {}, {}]"_s;
    expectDone(generateBy(expression, {u"--platform"_s, u"universal"_s, u"--platform"_s, u"watch"_s,
                                       u"--platform"_s, u"android"_s}));
    EXPECT_EQ(tree(), NameList{"ipad/AppIcon.appiconset/a.png"});
}

TEST_F(CatalogueOption, an_entry_without_a_name_is_called_null) {
    expectDone(
        generateBy(u"[{'a': {'Dimensions': '{10, 10}'}}, {}, {}, {}, {}]"_s, {u"--platform"_s, u"iphone"_s}));
    EXPECT_EQ(found(), NameList{"iphone/AppIcon.appiconset/(null).png 10 10"});
}

TEST_F(CatalogueOption, an_entry_without_dimensions_is_told_and_the_others_are_made) {
    const QString expression =
        u"[{'a': {'Name': 'none'}, 'b': entry('b', '{10, 10}'), 'c': entry('c', '{11, 11}')},"
        " {}, {}, {}, {}]"_s;
    expectOneError(generateBy(expression, {u"--platform"_s, u"iphone"_s}),
                   iphone + u"none.png: its entry in the size catalogue has no \"Dimensions\""_s);
    EXPECT_EQ(found(),
              (NameList{"iphone/AppIcon.appiconset/b.png 10 10", "iphone/AppIcon.appiconset/c.png 11 11"}));
}

TEST_F(CatalogueOption, sizes_that_no_picture_has_are_told_and_the_others_are_made) {
    const QString expression = u"[{'a': entry('zero', '{0, 10}'), 'b': entry('less', '{-5, 10}'),"
                               " 'c': entry('huge', '{1e9, 1e9}'), 'f': entry('tiny', '{1e-400, 12}'), 'd': "
                               "entry('words', 'nan inf'),"
                               " 'e': entry('sound', '{10, 10}')}, {}, {}, {}, {}]"_s;
    const ProcessResult result = generateBy(expression, {u"--platform"_s, u"iphone"_s});
    EXPECT_EQ(result.exitStatus, 1);
    for (const char* told :
         {"zero.png: an icon of 0 × 10 points can't be made",
          "less.png: an icon of -5 × 10 points can't be made",
          "huge.png: an icon of 1000000000 × 1000000000 points is too large",
          "words.png: \"Dimensions\" in its entry of the size catalogue is not two numbers, such as {40, 40}",
          "tiny.png: an icon of 0 × 12 points can't be made"})
        EXPECT_TRUE(result.errors.contains(told)) << told << '\n' << result.errors.constData();
    EXPECT_EQ(found(), NameList{"iphone/AppIcon.appiconset/sound.png 10 10"});
}

TEST_F(CatalogueOption, a_name_with_a_slash_fails_that_file_alone) {
    const QString expression =
        u"[{'a': entry('x/y', '{10, 10}'), 'b': entry('b', '{10, 10}')}, {}, {}, {}, {}]"_s;
    expectOneError(generateBy(expression, {u"--platform"_s, u"iphone"_s}), iphone + u"x/y.png: "_s);
    EXPECT_EQ(tree(), NameList{"iphone/AppIcon.appiconset/b.png"});
}

TEST_F(CatalogueOption, of_two_entries_of_one_name_the_later_stays_and_is_listed_once) {
    const QString expression =
        u"[{'a': entry('same', '{10, 10}'), 'b': entry('same', '{20, 20}')}, {}, {}, {}, {}]"_s;
    const ProcessResult result = generateBy(expression, {u"--platform"_s, u"iphone"_s, u"--json"_s});
    expectDone(result);
    EXPECT_EQ(found(), NameList{"iphone/AppIcon.appiconset/same.png 20 20"});
    const QJsonArray files = printedJson(result)[u"files"_s].toArray();
    ASSERT_EQ(files.size(), 1);
    EXPECT_EQ(files[0].toObject()[u"width"_s].toInt(), 20);
    EXPECT_EQ(files[0].toObject()[u"bytes"_s].toInteger(),
              QFileInfo(out() + u'/' + iphone + u"same.png"_s).size());
}

TEST_F(CatalogueOption, a_fractional_size_makes_the_next_larger_picture) {
    expectDone(
        generateBy(u"[{'a': entry('a', '{27.5, 27.5}')}, {}, {}, {}, {}]"_s, {u"--platform"_s, u"iphone"_s}));
    EXPECT_EQ(found(), NameList{"iphone/AppIcon.appiconset/a.png 28 28"});
}

TEST_F(CatalogueOption, a_size_need_not_be_square) {
    expectDone(
        generateBy(u"[{'a': entry('a', '{20,30}')}, {}, {}, {}, {}]"_s, {u"--platform"_s, u"iphone"_s}));
    EXPECT_EQ(found(), NameList{"iphone/AppIcon.appiconset/a.png 20 30"});
}

TEST_F(CatalogueOption, a_name_is_taken_as_it_is) {
    const QString expression = u"[{'a': entry('50%20 ü @2x', '{10, 10}')}, {}, {}, {}, {}]"_s;
    expectDone(generateBy(expression, {u"--platform"_s, u"iphone"_s}));
    EXPECT_EQ(tree(), NameList{"iphone/AppIcon.appiconset/50%20 ü @2x.png"});
}

TEST_F(CatalogueOption, the_largest_icon_of_it_counts_for_warnings) {
    const QString catalogue =
        propertyList(u"b.plist"_s, u"[{'a': entry('a', '{40, 40}')}, {}, {}, {}, {}]"_s);
    const QStringList options{u"--catalogue"_s, catalogue, u"--platform"_s, u"iphone"_s};
    expectDone(generate(flatPicture(u"40.png"_s, 40, 40), options));
    const ProcessResult smaller = generate(flatPicture(u"39.png"_s, 39, 39), options);
    EXPECT_EQ(smaller.exitStatus, 0);
    EXPECT_TRUE(smaller.errors.contains("smaller than the largest icon (40 × 40)"));
}

TEST_F(CatalogueOption, an_icon_that_is_not_made_counts_for_no_warning) {
    const QString catalogue =
        propertyList(u"b.plist"_s, u"[{'a': entry('a', '{40, 40}'), 'b': entry('b', '{5000, 0}'),"
                                   " 'c': entry('c', '{200000, 200000}'), 'd': entry('../d', '{500, 500}'),"
                                   " 'e': entry('none/e', '{500, 500}'), 'f': entry('twice', '{500, 500}'),"
                                   " 'g': entry('twice', '{30, 30}')}, {}, {}, {}, {}]"_s);
    const QStringList options{u"--catalogue"_s, catalogue, u"--platform"_s, u"iphone"_s};
    const ProcessResult result = generate(flatPicture(u"40.png"_s, 40, 40), options);
    EXPECT_EQ(tree(), (NameList{"iphone/AppIcon.appiconset/a.png", "iphone/AppIcon.appiconset/twice.png"}));
    EXPECT_FALSE(result.errors.contains("smaller")) << result.errors.constData();
    ASSERT_TRUE(QDir().mkpath(out() + u'/' + iphone + u"none"_s));
    EXPECT_TRUE(generate(flatPicture(u"40.png"_s, 40, 40), options)
                    .errors.contains("smaller than the largest icon (500 × 500)"));
}

TEST_F(CatalogueOption, each_side_of_the_icons_counts_by_itself_for_warnings) {
    const QString catalogue = propertyList(
        u"b.plist"_s, u"[{'a': entry('a', '{200, 100}'), 'b': entry('b', '{50, 150}')}, {}, {}, {}, {}]"_s);
    const auto warned = [&](int width, int height) {
        const ProcessResult result = generate(flatPicture(u"p.png"_s, width, height),
                                              {u"--catalogue"_s, catalogue, u"--platform"_s, u"iphone"_s});
        EXPECT_EQ(result.exitStatus, 0);
        const QStringList lines = result.errorLines().filter(u"enlarged"_s);
        return lines.value(0).section(u" is "_s, 1).toStdString();
    };
    EXPECT_EQ(warned(200, 150), "");
    EXPECT_EQ(warned(199, 150), "narrower than the widest icon (200) and will be enlarged");
    EXPECT_EQ(warned(200, 149), "lower than the highest icon (150) and will be enlarged");
    EXPECT_EQ(
        warned(10, 10),
        "narrower than the widest icon (200) and lower than the highest icon (150) and will be enlarged");
}
