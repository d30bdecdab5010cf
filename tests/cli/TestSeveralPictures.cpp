#include "tests/cli/CliTest.h"

#include <QDir>
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
    /// Twelve pictures, which take some seconds.
    QStringList manyPictures() const {
        QStringList names;
        for (int i = 0; i < 12; ++i) {
            names << u"many%1.png"_s.arg(i);
            flatPicture(names.last(), 512, 512, QColor(20 * i, 100, 50));
        }
        return names;
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

TEST_F(SeveralPictures, any_number_of_processes_makes_and_prints_the_same) {
    file(u"broken.png"_s, "no picture");
    const QStringList pictures{u"red.png"_s, u"broken.png"_s, u"green.png"_s, u"blue.png"_s};
    const ProcessResult alone = generateAll(pictures, {u"--jobs"_s, u"1"_s});
    const std::vector<std::string> names = tree();
    EXPECT_EQ(names.size(), 21U);
    for (const char* jobs : {"2", "3", "9"}) {
        ASSERT_TRUE(QDir(out()).removeRecursively());
        const ProcessResult several = generateAll(pictures, {u"--jobs"_s, QLatin1String(jobs)});
        EXPECT_EQ(several.exitStatus, 1);
        EXPECT_EQ(several.output.toStdString(), alone.output.toStdString());
        EXPECT_EQ(several.errors.toStdString(), alone.errors.toStdString());
        EXPECT_EQ(tree(), names);
    }
}

TEST_F(SeveralPictures, a_process_that_is_killed_fails_its_picture_alone) {
    const QByteArray printed = printedByPython(
        u"import os, signal, subprocess, sys, time\n"
        "os.chdir(sys.argv[1])\n"
        "run = subprocess.Popen(sys.argv[2:], stderr=subprocess.PIPE, stdout=subprocess.DEVNULL)\n"
        "children = []\n"
        "while len(children) < 2:\n"
        "    time.sleep(0.002)\n"
        "    children = open(f'/proc/{run.pid}/task/{run.pid}/children').read().split()\n"
        "time.sleep(0.05)\n"
        "os.kill(int(children[0]), signal.SIGKILL)\n"
        "errors = run.communicate()[1].decode()\n"
        "print(run.returncode, errors.count('ended by signal 9'), errors.count(': error: '))\n"_s,
        QStringList{path({}), QStringLiteral(TOBRIMAX_CLI), u"generate"_s} + manyPictures() +
            QStringList{u"--out"_s, u"icons"_s, u"--jobs"_s, u"2"_s});
    EXPECT_EQ(printed.toStdString(), "1 1 1\n");
    EXPECT_EQ(QDir(out()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size() >= 11, true);
}

TEST_F(SeveralPictures, processes_end_with_the_one_that_started_them) {
    for (const char* signal : {"TERM", "KILL"}) {
        const QByteArray printed = printedByPython(
            u"import os, signal, subprocess, sys, time\n"
            "os.chdir(sys.argv[1])\n"
            "run = subprocess.Popen(sys.argv[3:], stderr=subprocess.DEVNULL, stdout=subprocess.DEVNULL)\n"
            "children = []\n"
            "while len(children) < 2:\n"
            "    time.sleep(0.002)\n"
            "    children = open(f'/proc/{run.pid}/task/{run.pid}/children').read().split()\n"
            "time.sleep(0.05)\n"
            "run.send_signal(getattr(signal, 'SIG' + sys.argv[2]))\n"
            "run.wait()\n"
            "def lives(child):\n"
            "    try: return open(f'/proc/{child}/stat').read().rsplit(')')[1].split()[0] != 'Z'\n"
            "    except OSError: return False\n"
            "end = time.monotonic() + 20\n"
            "while any(map(lives, children)) and time.monotonic() < end: time.sleep(0.01)\n"
            "print(any(map(lives, children)))\n"_s,
            QStringList{path({}), QLatin1String(signal), QStringLiteral(TOBRIMAX_CLI), u"generate"_s} +
                manyPictures() + QStringList{u"--out"_s, u"icons"_s, u"--jobs"_s, u"2"_s});
        EXPECT_EQ(printed.toStdString(), "False\n") << signal;
        EXPECT_LT(QDir(out()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 12);
        ASSERT_TRUE(QDir(out()).removeRecursively());
    }
}

TEST_F(SeveralPictures, one_picture_starts_no_process) {
    // The search for leaks does not work where a process is traced.
    const ProcessResult traced = runProcess(
        u"env"_s, {u"ASAN_OPTIONS=detect_leaks=0"_s, u"strace"_s, u"-f"_s, u"-e"_s, u"trace=process"_s,
                   u"-o"_s, path(u"calls"_s), QStringLiteral(TOBRIMAX_CLI), u"generate"_s, path(u"red.png"_s),
                   u"--out"_s, out(), u"--platform"_s, u"android"_s});
    if (traced.exitStatus == 127)
        GTEST_SKIP() << "strace is not installed";
    EXPECT_EQ(traced.exitStatus, 0);
    const QByteArray calls = content(path(u"calls"_s));
    EXPECT_EQ(calls.count("execve("), 1);
    EXPECT_FALSE(calls.contains("vfork(")) << calls.toStdString();
}

TEST_F(SeveralPictures, a_number_of_jobs_that_is_none_is_wrong_usage) {
    for (const QString& jobs : {u"0"_s, u"-1"_s, u"two"_s, u"1001"_s, u"1.5"_s}) {
        const ProcessResult result = generateAll({u"red.png"_s, u"blue.png"_s}, {u"--jobs"_s, jobs});
        EXPECT_EQ(result.exitStatus, 2);
        EXPECT_TRUE(result.errors.contains("--jobs takes a whole number from 1 to 1000"))
            << result.errors.toStdString();
    }
}
