#include "tests/cli/CliTest.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

/// Names that a program easily misreads.
class Names : public CliTest {
  protected:
    /// Generates the iPhone's set in the test's folder.
    ProcessResult generateInto(const QString& folder, const QString& picture) const {
        return runCli({u"generate"_s, u"--platform"_s, u"iphone"_s, u"--out"_s, folder, u"--"_s, picture},
                      path({}));
    }
    static void expectDone(const ProcessResult& result) {
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(otherErrorLines(result), QStringList());
    }
    QString copiedSample(const QString& name) const { return file(name, content(sample(u"svg"_s))); }
};

} // namespace

TEST_F(Names, a_percent_sign_in_the_output_folder_stays) {
    const QString folder = path(u"50% off"_s);
    expectDone(runCli({u"generate"_s, sample(u"svg"_s), u"--out"_s, folder}));
    EXPECT_EQ(tree(folder).size(), 54U);
    EXPECT_EQ(QDir(path({})).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{u"50% off"_s});
}

TEST_F(Names, a_percent_escape_in_the_output_folder_stands_for_itself) {
    ASSERT_TRUE(QDir().mkpath(path(u"a b/mac/AppIcon.appiconset"_s)));
    for (const QString& name : {u"a%20b"_s, u"a%00"_s, u"a%ff"_s, u"%2e%2e"_s}) {
        SCOPED_TRACE(name.toStdString());
        const ProcessResult result =
            runCli({u"generate"_s, sample(u"svg"_s), u"--out"_s, path(name), u"--platform"_s, u"mac"_s});
        expectDone(result);
        EXPECT_TRUE(result.output.contains(QFile::encodeName(name)));
        EXPECT_EQ(tree(path(name)).size(), 11U);
    }
    EXPECT_EQ(tree(path(u"a b"_s)), std::vector<std::string>{"mac/AppIcon.appiconset"});
}

TEST_F(Names, a_colon_at_the_start_of_relative_names) {
    propertyList(u"./:c"_s, u"[{'a': entry('icon', '{8, 8}')}, {}, {}, {}, {}]"_s);
    copiedSample(u"./:p.svg"_s);
    const auto expectHere = [&](const QStringList& words) { expectDone(runCli(words, path({}))); };
    expectHere({u"generate"_s, u":p.svg"_s, u"--out"_s, u":g"_s, u"--platform"_s, u"iphone"_s,
                u"--catalogue"_s, u":c"_s});
    EXPECT_EQ(tree(path(u"./:g"_s)), std::vector<std::string>{"iphone/AppIcon.appiconset/icon.png"});
    expectHere({u"icns"_s, u"make"_s, u":p.svg"_s, u"--out"_s, u":i"_s});
    expectHere({u"icns"_s, u"extract"_s, u":i"_s, u"--out"_s, u":x"_s});
    EXPECT_EQ(tree(path(u"./:x"_s)).size(), 7U);
    expectHere({u"export"_s, u":p.svg"_s, u"--format"_s, u"png"_s, u"--out"_s, u":e"_s});
    EXPECT_FALSE(QImage(path(u"./:e"_s)).isNull());
    ASSERT_TRUE(QDir().mkdir(path(u"./:d"_s)));
    for (const QString& item : {u":e"_s, u":d"_s}) {
        expectHere({u"custom-icon"_s, u"set"_s, item, u":i"_s, u"--apple-double"_s});
        EXPECT_TRUE(QFileInfo::exists(path(u"./._"_s + item)));
        expectHere({u"custom-icon"_s, u"remove"_s, item, u"--apple-double"_s});
    }
    EXPECT_EQ(tree(path(u"./:d"_s)), std::vector<std::string>());
    const ProcessResult missing = runCli({u"generate"_s, u":p.svg"_s, u"--out"_s, u":g"_s, u"--catalogue"_s,
                                          u":/resources/ImageSizeFile.plist"_s},
                                         path({}));
    expectOneError(missing, u":/resources/ImageSizeFile.plist: No such file or directory"_s);
}

TEST_F(Names, spaces) {
    copiedSample(u"my picture.svg"_s);
    expectDone(runCli(
        {u"generate"_s, u"my picture.svg"_s, u"--out"_s, u" my icons "_s, u"--platform"_s, u"iphone"_s},
        path({})));
    EXPECT_EQ(tree(path(u" my icons "_s)).size(), 9U);
}

TEST_F(Names, a_leading_dash_of_the_output_folder) {
    expectDone(runCli({u"generate"_s, sample(u"svg"_s), u"--out"_s, u"./-x"_s, u"--platform"_s, u"iphone"_s},
                      path({})));
    EXPECT_EQ(tree(path(u"-x"_s)).size(), 9U);
}

TEST_F(Names, a_leading_dash_of_the_picture_after_two_dashes) {
    copiedSample(u"-picture.svg"_s);
    expectDone(generateInto(out(), u"-picture.svg"_s));
    EXPECT_EQ(tree().size(), 9U);
}

TEST_F(Names, a_picture_called_like_an_option_after_two_dashes) {
    copiedSample(u"--json"_s);
    const ProcessResult result = generateInto(out(), u"--json"_s);
    expectDone(result);
    EXPECT_FALSE(result.output.startsWith('{'));
    EXPECT_EQ(tree().size(), 9U);
}

TEST_F(Names, a_picture_called_like_the_command) {
    copiedSample(u"generate"_s);
    expectDone(runCli({u"generate"_s, u"generate"_s, u"--out"_s, u"icons"_s, u"--platform"_s, u"iphone"_s},
                      path({})));
    EXPECT_EQ(tree().size(), 9U);
}

TEST_F(Names, a_line_break_is_escaped_in_messages) {
    const ProcessResult result = generate(path(u"two\nlines.png"_s));
    expectOneError(result, u"two\\nlines.png: "_s);
}

TEST_F(Names, what_controls_a_terminal_is_escaped_in_messages) {
    const ProcessResult result = generate(path(u"a\u001b[31mb\u202ec.png"_s));
    expectOneError(result, u"a\\x1b[31mb\\u202ec.png: "_s);
}

TEST_F(Names, a_line_break_in_the_output_folder) {
    const QString folder = path(u"two\nlines"_s);
    const ProcessResult result =
        runCli({u"generate"_s, sample(u"svg"_s), u"--out"_s, folder, u"--platform"_s, u"iphone"_s});
    expectDone(result);
    EXPECT_TRUE(result.output.contains("two\\nlines"));
    EXPECT_EQ(tree(folder).size(), 9U);
}

TEST_F(Names, letters_of_all_scripts) {
    const QString picture = copiedSample(u"Übung ☃ 絵 🎨.svg"_s);
    const QString folder = path(u"иконки/アイコン"_s);
    const ProcessResult result =
        runCli({u"generate"_s, picture, u"--out"_s, folder, u"--platform"_s, u"iphone"_s});
    expectDone(result);
    EXPECT_TRUE(result.output.contains("иконки/アイコン"));
    EXPECT_EQ(tree(folder).size(), 9U);
}

TEST_F(Names, a_picture_whose_name_is_not_UTF8) {
    // The shell removes the picture itself: Qt removes the test's folder, but cannot name this file.
    const QString script = u"name=$(printf 'a\\377.svg'); cp \"$1\" \"$name\" || exit 9\n"
                           "\"$0\" generate \"$name\" --out icons --platform iphone; status=$?\n"
                           "rm \"$name\"; exit $status"_s;
    expectDone(runProcess(u"/bin/sh"_s, {u"-c"_s, script, QStringLiteral(TOBRIMAX_CLI), sample(u"svg"_s)},
                          path({})));
    EXPECT_EQ(tree().size(), 9U);
}

TEST_F(Names, an_output_folder_with_slashes_at_its_end) {
    const QString folder = path(u"deep/down"_s);
    expectDone(runCli(
        {u"generate"_s, sample(u"svg"_s), u"--out"_s, folder + u"///"_s, u"--platform"_s, u"iphone"_s}));
    EXPECT_EQ(tree(folder).size(), 9U);
}
