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
        EXPECT_EQ(result.errors.toStdString(), "");
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

TEST_F(Names, a_percent_escape_in_the_output_folder_sends_the_files_elsewhere_which_fails) {
    const QString folder = path(u"a%20b"_s);
    const ProcessResult result =
        runCli({u"generate"_s, sample(u"svg"_s), u"--out"_s, folder, u"--platform"_s, u"iphone"_s});
    expectOneError(result, u"9 files not written"_s);
    EXPECT_TRUE(result.errors.contains("a b/iphone/AppIcon.appiconset/Icon-App-20x20@2x.png"));
    EXPECT_EQ(tree(folder), std::vector<std::string>{"iphone/AppIcon.appiconset"});
    EXPECT_FALSE(QFileInfo::exists(path(u"a b"_s)));
}

TEST_F(Names, a_percent_escape_in_the_output_folder_sends_the_files_to_the_unescaped_one_if_it_exists) {
    ASSERT_TRUE(QDir().mkpath(path(u"a b/iphone/AppIcon.appiconset"_s)));
    expectDone(runCli(
        {u"generate"_s, sample(u"svg"_s), u"--out"_s, path(u"a%20b"_s), u"--platform"_s, u"iphone"_s}));
    EXPECT_EQ(tree(path(u"a b"_s)).size(), 9U);
    EXPECT_EQ(QImage(path(u"a b/iphone/AppIcon.appiconset/Icon-App-20x20@2x.png"_s)).size(), QSize(40, 40));
    EXPECT_EQ(tree(path(u"a%20b"_s)), std::vector<std::string>{"iphone/AppIcon.appiconset"});
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
