#include "cli/common/Command.h"
#include "tests/cli/CliTest.h"
#include "tests/support/Slowness.h"

#include <QDir>
#include <QJsonArray>

namespace {

/// tobrimax.toml in the test's folder.
class Project : public CliTest {
  protected:
    void SetUp() override {
        CliTest::SetUp();
        flatPicture(u"logo.png"_s, 128, 128, Qt::blue);
        flatPicture(u"mark.png"_s, 128, 128, Qt::red);
    }
    ProcessResult run(const QByteArray& toml, const QStringList& more = {}) const {
        file(u"tobrimax.toml"_s, toml);
        return runCli(QStringList{u"generate"_s} + more, path({}));
    }
    /// The same set with these options of the command line.
    void expectSameAs(const QStringList& options) const {
        const ProcessResult typed =
            runCli(QStringList{u"generate"_s, u"logo.png"_s, u"--out"_s, u"typed"_s} + options, path({}));
        EXPECT_EQ(typed.exitStatus, 0) << typed.errors.toStdString();
        const std::vector<std::string> names = tree(path(u"typed"_s));
        ASSERT_EQ(tree(), names);
        for (const std::string& name : names) {
            const QString file = u'/' + QString::fromStdString(name);
            EXPECT_EQ(content(out() + file), content(path(u"typed"_s) + file)) << name;
        }
    }
    void expectWrong(const QByteArray& toml, const QByteArray& sentence, const QStringList& more = {}) const {
        const ProcessResult result = run(toml, more);
        EXPECT_EQ(result.exitStatus, 2) << sentence.toStdString();
        EXPECT_EQ(result.output.toStdString(), "");
        EXPECT_EQ(result.errorLines().size(), 1) << result.errors.toStdString();
        EXPECT_TRUE(result.errors.contains("error: tobrimax.toml: ")) << result.errors.toStdString();
        EXPECT_TRUE(result.errors.contains(sentence))
            << result.errors.toStdString() << " lacks " << sentence.toStdString();
        EXPECT_LT(result.seconds, slowness);
        EXPECT_FALSE(QDir(out()).exists());
    }
};

} // namespace

TEST_F(Project, options_are_those_of_the_command_line) {
    const ProcessResult result = run("picture = 'logo.png'\nout = 'icons'\nplatform = ['android', 'ipad']\n"
                                     "round-corner = 0.22\nborder = 0.125\nborder-color = 'tomato'\n"
                                     "background = '#102030'\nquiet = true\n"
                                     "fit = 'contain'\npadding = 0.1\nsmall = 'mark.png:48'\n");
    EXPECT_EQ(result.exitStatus, 0) << result.errors.toStdString();
    EXPECT_EQ(result.output.toStdString(), "");
    expectSameAs({u"--platform"_s, u"android"_s, u"--platform"_s, u"ipad"_s, u"--round-corner"_s, u"0.22"_s,
                  u"--border"_s, u"0.125"_s, u"--border-color"_s, u"tomato"_s, u"--background"_s,
                  u"#102030"_s, u"--fit"_s, u"contain"_s, u"--padding"_s, u"0.1"_s, u"--small"_s,
                  path(u"mark.png:48"_s)});
}

TEST_F(Project, each_option_of_the_command_is_a_key) {
    CLI::App app;
    addCommands(app);
    std::size_t count = 0;
    for (const CLI::Option* option : app.get_subcommand("generate")->get_options()) {
        if (option->get_positional() || option->get_lnames().front() == "help")
            continue;
        ++count;
        const QByteArray key = QByteArray::fromStdString(option->get_lnames().front());
        expectWrong(key + " = []\n", '"' + key + "\" takes ");
    }
    EXPECT_GT(count, 15U);
}

TEST_F(Project, each_set_is_made_and_what_stands_above_holds_for_all) {
    const ProcessResult result = run("picture = 'logo.png'\nbackground = 'white'\njson = true\n"
                                     "[[set]]\nout = 'icons/one'\nplatform = 'android'\n"
                                     "[[set]]\nout = 'icons/two'\nlayout = 'web'\npicture = 'mark.png'\n");
    EXPECT_EQ(result.exitStatus, 0) << result.errors.toStdString();
    const QJsonArray runs = printedJson(result)[u"runs"_s].toArray();
    ASSERT_EQ(runs.size(), 2);
    EXPECT_EQ(runs[0][u"picture"_s].toString(), u"logo.png"_s);
    EXPECT_EQ(runs[1][u"picture"_s].toString(), u"mark.png"_s);
    EXPECT_EQ(tree(out() + u"/one"_s).size(), 7U);
    EXPECT_TRUE(QFile::exists(out() + u"/two/favicon.ico"_s));
}

TEST_F(Project, several_pictures_go_into_folders_of_their_names) {
    const ProcessResult result =
        run("picture = ['logo.png', 'mark.png']\nout = 'icons'\nplatform = 'android'\n");
    EXPECT_EQ(result.exitStatus, 0) << result.errors.toStdString();
    EXPECT_EQ(tree(out() + u"/logo"_s).size(), 7U);
    EXPECT_EQ(tree(out() + u"/mark"_s).size(), 7U);
}

TEST_F(Project, options_that_are_typed_win) {
    const ProcessResult result = run("picture = 'logo.png'\nout = 'elsewhere'\nplatform = 'mac'\n",
                                     {u"--out"_s, u"icons"_s, u"--platform"_s, u"android"_s});
    EXPECT_EQ(result.exitStatus, 0) << result.errors.toStdString();
    EXPECT_EQ(tree().size(), 7U);
    EXPECT_FALSE(QDir(path(u"elsewhere"_s)).exists());
}

TEST_F(Project, a_typed_picture_leaves_the_file_unread) {
    const ProcessResult result =
        run("nonsense", {u"logo.png"_s, u"--out"_s, u"icons"_s, u"--platform"_s, u"android"_s});
    EXPECT_EQ(result.exitStatus, 0) << result.errors.toStdString();
    EXPECT_EQ(tree().size(), 7U);
}

TEST_F(Project, without_picture_and_file_the_sentence_names_both) {
    const ProcessResult result = runCli({u"generate"_s}, path({}));
    EXPECT_EQ(result.exitStatus, 2);
    ASSERT_EQ(result.errorLines().size(), 1);
    EXPECT_TRUE(result.errors.contains("PICTURE is missing, and there is no tobrimax.toml here"));
}

TEST_F(Project, what_is_wrong_is_told_with_its_key_and_writes_nothing) {
    const QByteArray whole = "picture = 'logo.png'\nout = 'icons'\n";
    expectWrong("pictur = 'logo.png'\n", "there is no key \"pictur\"; did you mean \"picture\"?");
    expectWrong(whole + "[[set]]\nplatfrom = 'mac'\n", "set 1: there is no key \"platfrom\"; did you mean");
    expectWrong(whole + "border = '0.1'\n", "\"border\" takes a number");
    expectWrong(whole + "round-corner = 7\n", "--round-corner takes a fraction from 0 to 1, not '7'");
    expectWrong(whole + "layout = ['web', 3]\n", "\"layout\" takes a text or a list of texts");
    expectWrong(whole + "open = 'yes'\n", "\"open\" takes true or false");
    expectWrong(whole + "set = 3\n", "\"set\" takes a list of tables");
    expectWrong(whole + "[[set]]\njson = true\n", "\"json\" holds for all sets");
    expectWrong("picture = 'logo.png'\nout = '-'\n[[set]]\n[[set]]\n",
                "only one set can be written as a tar stream");
    expectWrong("out = 'icons'\n", "\"picture\" is missing");
    expectWrong("picture = 'logo.png'\n", "\"out\" is missing");
    expectWrong(whole + "platform = 'mca'\n", "there is no platform 'mca'");
    expectWrong(whole + "layout = 'wbe'\n[[set]]\n[[set]]\n", "set 1: there is no layout \"wbe\"");
    expectWrong("\xef\xbb\xbf"
                "a = 1\n",
                "there is no key \"a\"");
    expectWrong("picture = \n", "line 1");
}

TEST_F(Project, two_sets_that_write_one_path_are_refused) {
    expectWrong("picture = 'logo.png'\n[[set]]\nout = 'icons/x/..'\nplatform = 'mac'\n"
                "[[set]]\nout = 'icons'\nplatform = ['android', 'mac']\n",
                "set 1 and set 2 both write icons/mac/");
    expectWrong("picture = 'logo.png'\nout = 'icons'\n[[set]]\nlayout = 'web'\n[[set]]\nlayout = 'web'\n",
                "set 1 and set 2 both write icons/");
}

TEST_F(Project, an_enormous_file_is_refused_within_a_second) {
    expectWrong(QByteArray(10 << 20, '#'), "");
    expectWrong("a = " + QByteArray(100000, '['), "");
    QByteArray tables;
    for (int i = 0; i < 100000; ++i)
        tables += "[a" + QByteArray::number(i) + "]\n";
    expectWrong(tables, "");
}

TEST_F(Project, a_file_that_can_not_be_read_fails) {
    ASSERT_TRUE(QDir().mkdir(path(u"tobrimax.toml"_s)));
    const ProcessResult result = runCli({u"generate"_s}, path({}));
    expectOneError(result, u"tobrimax.toml: Is a directory"_s);
}
