#include "tests/cli/CliTest.h"

#include <QJsonArray>

#include <gmock/gmock.h>

namespace {

class SeveralPictures : public CliTest {
  protected:
    void SetUp() override {
        CliTest::SetUp();
        for (const char* name : {"red", "green", "blue"})
            flatPicture(QLatin1String(name) + u".png"_s, 96, 96, QColor(QLatin1String(name)));
    }
    /// Generates the icons for Android of these pictures.
    ProcessResult generateAll(const QStringList& pictures, const QStringList& more = {}) const {
        return runCli(QStringList{u"generate"_s} + pictures +
                          QStringList{u"--out"_s, u"icons"_s, u"--platform"_s, u"android"_s} + more,
                      path({}));
    }
    QColor color(const QString& folder) const {
        return icon(folder + u"/android/icons/ic_launcher-mdpi.png"_s).pixelColor(24, 24);
    }
};

} // namespace

TEST_F(SeveralPictures, each_goes_into_a_folder_of_its_name) {
    const ProcessResult result = generateAll({u"red.png"_s, u"green.png"_s, u"blue.png"_s});
    EXPECT_EQ(result.exitStatus, 0) << result.errors.toStdString();
    EXPECT_EQ(tree().size(), 21U);
    for (const char* name : {"red", "green", "blue"})
        EXPECT_TRUE(isNear(color(QLatin1String(name)), QColor(QLatin1String(name)))) << name;
}

TEST_F(SeveralPictures, a_set_is_the_same_to_the_byte_as_that_of_one_picture) {
    generateAll({u"red.png"_s, u"green.png"_s});
    runCli({u"generate"_s, u"green.png"_s, u"--out"_s, u"alone"_s, u"--platform"_s, u"android"_s}, path({}));
    const std::vector<std::string> names = tree(path(u"alone"_s));
    ASSERT_EQ(names, tree(out() + u"/green"_s));
    for (const std::string& name : names) {
        const QString file = u'/' + QString::fromStdString(name);
        EXPECT_EQ(content(path(u"alone"_s) + file), content(out() + u"/green"_s + file)) << name;
    }
}

TEST_F(SeveralPictures, results_are_printed_in_the_order_of_the_pictures) {
    const ProcessResult result = generateAll({u"red.png"_s, u"green.png"_s, u"blue.png"_s});
    const QStringList lines = QString::fromUtf8(result.output).split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 3) << result.output.toStdString();
    EXPECT_TRUE(lines[0].endsWith(u"/icons/red"_s));
    EXPECT_TRUE(lines[1].endsWith(u"/icons/green"_s));
    EXPECT_TRUE(lines[2].endsWith(u"/icons/blue"_s));
    const QStringList warnings = result.errorLines();
    ASSERT_EQ(warnings.size(), 3) << result.errors.toStdString();
    EXPECT_TRUE(warnings[0].startsWith(u"tobrimax-cli: warning: red.png: the picture (96 × 96)"_s));
    EXPECT_TRUE(warnings[2].startsWith(u"tobrimax-cli: warning: blue.png: "_s));
}

TEST_F(SeveralPictures, a_broken_one_does_not_stop_the_others) {
    file(u"broken.png"_s, "no picture");
    const ProcessResult result = generateAll({u"red.png"_s, u"broken.png"_s, u"blue.png"_s}, {u"--quiet"_s});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(result.errors.contains("tobrimax-cli: error: broken.png: ")) << result.errors.toStdString();
    EXPECT_EQ(tree().size(), 14U);
}

TEST_F(SeveralPictures, json_is_one_document_with_a_run_for_each) {
    file(u"broken.png"_s, "no picture");
    const ProcessResult result = generateAll({u"red.png"_s, u"broken.png"_s, u"blue.png"_s}, {u"--json"_s});
    EXPECT_EQ(result.exitStatus, 1);
    const QJsonObject document = printedJson(result);
    EXPECT_EQ(document.keys(), QStringList{u"runs"_s});
    const QJsonArray runs = document[u"runs"_s].toArray();
    ASSERT_EQ(runs.size(), 3);
    const qsizetype files[] = {7, 0, 7};
    const char* names[] = {"red.png", "broken.png", "blue.png"};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(runs[i][u"picture"_s].toString(), QLatin1String(names[i]));
        EXPECT_EQ(runs[i][u"files"_s].toArray().size(), files[i]);
        EXPECT_EQ(runs[i][u"errors"_s].toArray().isEmpty(), files[i] > 0);
    }
}

TEST_F(SeveralPictures, two_of_one_name_are_wrong_usage_that_names_both) {
    file(u"other/red.svg"_s, "<svg/>");
    const ProcessResult result = generateAll({u"red.png"_s, u"blue.png"_s, u"other/red.svg"_s});
    EXPECT_EQ(result.exitStatus, 2);
    ASSERT_EQ(result.errorLines().size(), 1);
    EXPECT_TRUE(result.errors.contains("'red.png' and 'other/red.svg' would both go to icons/red"))
        << result.errors.toStdString();
    EXPECT_TRUE(tree().empty());
}

TEST_F(SeveralPictures, no_name_leads_out_of_the_folder) {
    for (const QString& name : {u"...png"_s, u"..png"_s, u".png"_s})
        flatPicture(u"dots.png"_s, 96, 96).isEmpty() || QFile::copy(path(u"dots.png"_s), path(name));
    EXPECT_EQ(generateAll({u"...png"_s, u"..png"_s, u".png"_s}).exitStatus, 0);
    EXPECT_EQ(tree().size(), 21U);
    for (const char* name : {"...png", "..png", ".png"})
        EXPECT_EQ(tree(out() + u'/' + QLatin1String(name)).size(), 7U) << name;
}

TEST_F(SeveralPictures, a_layout_that_can_not_be_used_is_told_and_writes_nothing) {
    const ProcessResult result = runCli({u"generate"_s, u"red.png"_s, u"blue.png"_s, u"--out"_s, u"icons"_s,
                                         u"--layout"_s, u"xcod"_s, u"--json"_s},
                                        path({}));
    EXPECT_NE(result.exitStatus, 0);
    EXPECT_EQ(printedJson(result)[u"runs"_s].toArray().size(), 2);
    EXPECT_TRUE(tree().empty());
}

TEST_F(SeveralPictures, a_terminal_shows_count_and_rate) {
    const QByteArray shown =
        printedByPython(u"import os, pty, sys\n"
                        "os.environ['TERM'] = 'xterm'\n"
                        "os.chdir(sys.argv[1])\n"
                        "sys.exit(pty.spawn(sys.argv[2:], lambda terminal: os.read(terminal, 4096)))\n"_s,
                        {path({}), QStringLiteral(TOBRIMAX_CLI), u"generate"_s, u"red.png"_s, u"blue.png"_s,
                         u"--out"_s, u"icons"_s, u"--platform"_s, u"android"_s});
    EXPECT_TRUE(shown.contains("] 0/2 sets\x1b[K")) << shown.toStdString();
    EXPECT_THAT(shown.toStdString(), testing::ContainsRegex("\\] 2/2 sets, [0-9]+\\.[0-9] a second"));
    EXPECT_FALSE(shown.contains("icons\x1b[K")) << "a set's own progress";
}
