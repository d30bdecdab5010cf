#include "tests/cli/CliTest.h"

#include <QFileInfo>

namespace {

class UsageErrors : public CliTest {
  protected:
    /// Expects that the words are refused with one line that contains all `sentences`, and that nothing else
    /// happens. With --json there is a document, too.
    void expectWrong(const QStringList& words, const QStringList& sentences) const {
        const ProcessResult result = runCli(words, path({}));
        EXPECT_EQ(result.exitStatus, 2);
        EXPECT_EQ(result.output.isEmpty(), !words.contains(u"--json"_s)) << result.output.toStdString();
        ASSERT_EQ(result.errorLines().size(), 1) << result.errors.toStdString();
        const QString line = result.errorLines().first();
        EXPECT_TRUE(line.startsWith(u"tobrimax-cli: error: "_s)) << line.toStdString();
        EXPECT_TRUE(line.contains(u"--help"_s)) << line.toStdString();
        for (const QString& sentence : sentences)
            EXPECT_TRUE(line.contains(sentence)) << line.toStdString() << " lacks " << sentence.toStdString();
        EXPECT_TRUE(tree(path({})).empty());
    }
    /// The same for a call that would succeed without `more`.
    void expectWrongOption(const QStringList& more, const QStringList& sentences) const {
        expectWrong(QStringList{u"generate"_s, sample(u"svg"_s), u"--out"_s, out()} + more, sentences);
    }
};

} // namespace

TEST_F(UsageErrors, no_command) {
    expectWrong({}, {u"command is missing"_s, u"generate"_s});
}

TEST_F(UsageErrors, an_unknown_command) {
    expectWrong({u"genrate"_s}, {u"'genrate'"_s, u"mean 'generate'"_s});
}

TEST_F(UsageErrors, an_unknown_command_with_arguments) {
    expectWrong({u"create"_s, sample(u"svg"_s), u"--out"_s, out()}, {u"'create'"_s, u"mean 'generate'"_s});
}

TEST_F(UsageErrors, an_unknown_option_before_the_command) {
    expectWrong({u"--versoin"_s}, {u"'--versoin'"_s, u"mean '--version'"_s});
}

TEST_F(UsageErrors, an_unknown_option) {
    expectWrongOption({u"--plattform"_s, u"mac"_s}, {u"'--plattform'"_s, u"mean '--platform'"_s});
    expectWrongOption({u"--boarder"_s, u"0.1"_s}, {u"'--boarder'"_s, u"mean '--border'"_s});
    expectWrongOption({u"--roundcorner=0.1"_s}, {u"--roundcorner"_s, u"mean '--round-corner'"_s});
}

TEST_F(UsageErrors, an_unknown_platform) {
    expectWrongOption({u"--platform"_s, u"iphnoe"_s}, {u"'iphnoe'"_s, u"mean 'iphone'"_s});
    expectWrongOption({u"--platform"_s, u"mac"_s, u"--platform"_s, u"wacth"_s},
                      {u"'wacth'"_s, u"mean 'watch'"_s});
}

TEST_F(UsageErrors, an_empty_platform) {
    expectWrongOption({u"--platform"_s, QString()}, {u"platform"_s});
}

TEST_F(UsageErrors, an_unknown_colour_name) {
    expectWrongOption({u"--border"_s, u"0.1"_s, u"--border-color"_s, u"stelblue"_s},
                      {u"'stelblue'"_s, u"mean 'steelblue'"_s});
}

TEST_F(UsageErrors, a_bad_hexadecimal_colour) {
    for (const QString& color : {u"#12345g"_s, u"#"_s, u"#12"_s, u"#1234"_s, u"#12345"_s, u"#1234567"_s,
                                 u"#123456789"_s, u"#+1+2+3"_s, u"#-1-2-3"_s, u"# 1 2 3"_s, u"#ééé"_s})
        expectWrongOption({u"--border"_s, u"0.1"_s, u"--border-color"_s, color},
                          {u'\'' + color + u'\'', u"#RRGGBB"_s});
}

TEST_F(UsageErrors, a_round_corner_that_is_no_fraction) {
    for (const QString& value : {u"x"_s, u"nan"_s, u"inf"_s, u"-1"_s, u"1.5"_s, u"0.2x"_s, u"22%"_s})
        expectWrongOption({u"--round-corner"_s, value}, {u"--round-corner"_s, u'\'' + value + u'\''});
}

TEST_F(UsageErrors, a_border_that_is_no_fraction) {
    for (const QString& value : {u"x"_s, u"nan"_s, u"-0.1"_s, u"1.001"_s, QString()})
        expectWrongOption({u"--border"_s, value}, {u"--border"_s});
}

TEST_F(UsageErrors, an_option_without_its_value) {
    for (const QString& option : {u"--platform"_s, u"--round-corner"_s, u"--border"_s, u"--catalogue"_s})
        expectWrongOption({option}, {option});
}

TEST_F(UsageErrors, a_missing_output_folder) {
    expectWrong({u"generate"_s, sample(u"svg"_s)}, {u"--out"_s});
}

TEST_F(UsageErrors, an_empty_output_folder) {
    expectWrong({u"generate"_s, sample(u"svg"_s), u"--out"_s, QString()}, {u"--out"_s});
}

TEST_F(UsageErrors, a_missing_picture) {
    expectWrong({u"generate"_s, u"--out"_s, out()}, {u"PICTURE"_s});
}

TEST_F(UsageErrors, one_argument_too_many) {
    expectWrongOption({u"second.png"_s}, {u"'second.png'"_s, u"one argument too many"_s});
}

TEST_F(UsageErrors, a_border_colour_without_a_border) {
    expectWrongOption({u"--border-color"_s, u"red"_s}, {u"--border-color needs --border"_s});
}

TEST_F(UsageErrors, quiet_and_verbose_at_once) {
    expectWrongOption({u"--quiet"_s, u"--verbose"_s}, {u"--quiet"_s, u"--verbose"_s});
}

TEST_F(UsageErrors, help_is_none) {
    for (const QStringList& words : {QStringList{u"--help"_s}, QStringList{u"generate"_s, u"--help"_s}}) {
        const ProcessResult result = runCli(words);
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_TRUE(result.output.contains("generate"));
        EXPECT_EQ(result.errors.toStdString(), "");
    }
}

TEST_F(UsageErrors, help_of_the_command_names_every_option) {
    const QByteArray help = runCli({u"generate"_s, u"--help"_s}).output;
    for (const char* option :
         {"PICTURE", "--out", "--platform", "--round-corner", "--border", "--border-color", "--catalogue",
          "--open", "--quiet", "--verbose", "--json", "--timings"})
        EXPECT_TRUE(help.contains(option)) << option;
}

TEST_F(UsageErrors, version_is_none) {
    const ProcessResult result = runCli({u"--version"_s});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_TRUE(QString::fromUtf8(result.output).startsWith(u"tobrimax-cli "_s))
        << result.output.toStdString();
    EXPECT_EQ(result.output.count('\n'), 1);
    EXPECT_EQ(result.errors.toStdString(), "");
}

TEST_F(UsageErrors, commands_of_commands) {
    expectWrong({u"icns"_s},
                {u"a command is missing: list, extract or make"_s, u"see tobrimax-cli icns --help"_s});
    expectWrong({u"icns"_s, u"lst"_s, u"a.icns"_s}, {u"'icns lst'"_s, u"mean 'list'"_s});
    expectWrong({u"icns"_s, u"list"_s}, {u"FILE is required"_s, u"see tobrimax-cli icns list --help"_s});
    expectWrong({u"icns"_s, u"list"_s, QString()}, {u"FILE is empty"_s});
    expectWrong({u"icns"_s, u"list"_s, u"a"_s, u"b"_s}, {u"'b' is one argument too many"_s});
    expectWrong({u"icns"_s, u"extract"_s, u"a"_s}, {u"--out is required"_s});
    expectWrong({u"icns"_s, u"extract"_s, QString(), u"--out"_s, u"b"_s}, {u"FILE is empty"_s});
    expectWrong({u"icns"_s, u"extract"_s, u"a"_s, u"--out"_s, QString()}, {u"--out is empty"_s});
    expectWrong({u"icns"_s, u"make"_s, QString(), u"--out"_s, u"b"_s}, {u"PICTURE is empty"_s});
    expectWrong({u"icns"_s, u"make"_s, u"a"_s, u"--out"_s, u"b"_s, u"--round-corner"_s, u"2"_s},
                {u"--round-corner"_s});
    expectWrong({u"custom-icon"_s}, {u"a command is missing: set or remove"_s});
    expectWrong({u"custom-icon"_s, u"set"_s, u"a"_s}, {u"FILE.icns is required"_s});
    expectWrong({u"custom-icon"_s, u"remove"_s, QString()}, {u"PATH is empty"_s});
    expectWrong({u"custom-icon"_s, u"set"_s, u"a"_s, QString()}, {u"FILE.icns is empty"_s});
}

TEST_F(UsageErrors, an_option_before_its_command) {
    expectWrong({u"--json"_s, u"icns"_s, u"list"_s, u"a"_s},
                {u"'--json'"_s, u"goes behind the command 'list'"_s});
    expectWrong({u"icns"_s, u"--out"_s}, {u"'--out' goes behind a command"_s});
}
