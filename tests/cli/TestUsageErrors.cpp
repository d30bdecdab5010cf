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
    expectWrong({u"genrate"_s, sample(u"svg"_s), u"--out"_s, out()}, {u"'genrate'"_s, u"mean 'generate'"_s});
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

TEST_F(UsageErrors, a_platform_behind_another_one) {
    expectWrongOption({u"--platform"_s, u"mac"_s, u"android"_s},
                      {u"'android' is one argument too many; several platforms are written with commas"_s});
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
                {u"write the option '--json' after the command 'list'"_s});
    expectWrong({u"icns"_s, u"--out"_s},
                {u"write the option '--out' after a command: list, extract or make"_s});
}

TEST_F(UsageErrors, a_word_that_is_near_to_nothing_gets_the_list_of_what_there_is) {
    expectWrong({u"paint"_s},
                {u"no command 'paint'; there are generate, layouts, icns, custom-icon and export"_s});
    expectWrong({u"icns"_s, u"paint"_s, u"a"_s},
                {u"no command 'icns paint'; there are list, extract and make"_s});
    expectWrongOption({u"--platform"_s, u"symbian"_s},
                      {u"no platform 'symbian'; there are iphone, ipad, universal, "
                       "watch, mac, android and all"_s});
    expectWrong({u"export"_s, u"a"_s, u"--out"_s, u"b"_s, u"--format"_s, u"xcf"_s},
                {u"no format 'xcf'; there are jpeg, tiff, bmp, gif, png and jpeg2000"_s});
    expectWrong({u"icns"_s, u"extract"_s, u"a"_s, u"--colour"_s},
                {u"no option '--colour'; there are --help and --out"_s});
    expectWrongOption({u"--background"_s, u"qqqqqq"_s},
                      {u"no colour 'qqqqqq'; a colour is #RGB, #RRGGBB, #RRGGBBAA or a name"_s});
}

TEST_F(UsageErrors, a_part_of_an_option_is_enough_to_find_it) {
    expectWrongOption({u"--corner"_s, u"0.2"_s}, {u"'--corner'; did you mean '--round-corner'?"_s});
    expectWrongOption({u"--corner=0.2"_s}, {u"'--corner'; did you mean '--round-corner'?"_s});
    expectWrongOption({u"--output=x"_s}, {u"'--output'; did you mean '--out'?"_s});
}

TEST_F(UsageErrors, a_colour_without_its_sign) {
    for (const QString& color : {u"ff0000"_s, u"F00"_s, u"ff000080"_s})
        expectWrongOption({u"--border"_s, u"0.1"_s, u"--border-color"_s, color},
                          {u"there is no colour '%1'; did you mean '#%1'?"_s.arg(color)});
}

TEST_F(UsageErrors, a_line_without_its_command_is_shown_whole) {
    expectWrong(
        {u"logo.svg"_s, u"--out"_s, u"x"_s},
        {u"there is no command 'logo.svg'; did you mean 'tobrimax-cli generate logo.svg --out x'?"_s});
    expectWrong(
        {u"-p"_s, u"mac"_s, u"--out=x"_s, u"my $logo.svg"_s},
        {u"a command is missing; did you mean 'tobrimax-cli generate -p mac --out=x \"my \\$logo.svg\"'?"_s});
    expectWrong({u"logo.svg"_s, u"--size"_s, u"9x9"_s}, {u"there is no command 'logo.svg'; there are"_s});
}

TEST_F(UsageErrors, a_command_that_is_inside_of_another_or_an_option) {
    expectWrong({u"list"_s, u"a.icns"_s}, {u"did you mean 'icns list'?"_s});
    expectWrong({u"version"_s}, {u"no command 'version'; did you mean '--version'?"_s});
}

TEST_F(UsageErrors, help_as_a_word_is_the_help) {
    EXPECT_EQ(runCli({u"help"_s}).output.toStdString(), runCli({u"--help"_s}).output.toStdString());
    for (const QStringList& command : {QStringList{u"generate"_s}, QStringList{u"icns"_s, u"list"_s}}) {
        const ProcessResult result = runCli(QStringList{u"help"_s} + command);
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(result.output.toStdString(),
                  runCli(command + QStringList{u"--help"_s}).output.toStdString());
    }
    expectWrong({u"help"_s, u"genrate"_s}, {u"'genrate'; did you mean 'generate'?"_s});
}

TEST_F(UsageErrors, a_picture_may_be_called_help) {
    expectOneError(generate(u"help"_s), u"help: No such file"_s);
}

TEST_F(UsageErrors, a_file_to_write_without_its_option) {
    expectWrong({u"icns"_s, u"make"_s, u"logo.svg"_s, u"logo.icns"_s},
                {u"'logo.icns' is one argument too many; did you mean '--out logo.icns'?"_s});
}

TEST_F(UsageErrors, a_layout_that_is_given_as_a_platform) {
    expectWrongOption({u"--platform"_s, u"windows"_s}, {u"'windows' is a layout: write --layout windows"_s});
}

TEST_F(UsageErrors, the_v_of_verbose_alone) {
    expectWrong({u"-v"_s}, {u"did you mean '--version'?"_s});
}

TEST_F(UsageErrors, another_verb_is_not_taken_for_a_picture) {
    expectWrong({u"convert"_s, u"logo.svg"_s, u"x.png"_s}, {u"no command 'convert'; there are generate, "_s});
}

TEST_F(UsageErrors, a_colour_that_the_shell_took_for_a_comment) {
    expectWrongOption({u"--background"_s}, {u"--background needs a value; a shell takes # for a comment"_s});
}
