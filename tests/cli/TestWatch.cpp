#include "tests/cli/CliTest.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QThread>

#include <csignal>
#include <cstdio>
#include <functional>

namespace {

/// A program that watches, and what it printed.
class Watch : public CliTest {
  protected:
    void start(const QStringList& words, const QString& folder = {}) {
        program.setWorkingDirectory(folder.isEmpty() ? path({}) : folder);
        program.start(QStringLiteral(TOBRIMAX_CLI), QStringList{u"generate"_s} + words);
        ASSERT_TRUE(program.waitForStarted());
    }
    void TearDown() override {
        if (program.state() != QProcess::NotRunning) {
            program.kill();
            program.waitForFinished();
        }
    }
    void collect(int milliseconds) {
        program.waitForReadyRead(milliseconds);
        output += program.readAllStandardOutput();
        errors += program.readAllStandardError();
    }
    /// Waits until `condition` holds, for at most half a minute.
    bool waitFor(const std::function<bool()>& condition) {
        QElapsedTimer timer;
        timer.start();
        while (!condition()) {
            constexpr int limit = 30'000;
            if (timer.elapsed() > limit || program.state() == QProcess::NotRunning)
                return false;
            constexpr int step = 20;
            collect(step);
        }
        return true;
    }
    /// How many runs were printed: one line for Android's icons in each.
    qsizetype runs() const { return output.count("android "); }
    bool waitForRuns(qsizetype count) {
        return waitFor([&] { return runs() >= count; });
    }
    /// Waits long enough for another run to show.
    void waitForNothing() {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 2000)
            collect(50);
    }
    QColor color(const QString& folder = u"icons"_s) const {
        return QImage(path(folder + u"/android/icons/ic_launcher-mdpi.png"_s)).pixelColor(24, 24);
    }
    /// Waits for the icons of that colour, which are written after the run's line was.
    bool waitForColor(const QColor& wanted, const QString& folder = u"icons"_s) {
        return waitFor([&] { return isNear(color(folder), wanted); });
    }
    int end(int signal) {
        ::kill(static_cast<pid_t>(program.processId()), signal);
        EXPECT_TRUE(program.waitForFinished());
        return program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1;
    }

    QProcess program;
    QByteArray output;
    QByteArray errors;
};

QStringList androidOf(const QString& picture) {
    return {picture, u"--out"_s, u"icons"_s, u"--platform"_s, u"android"_s, u"--watch"_s};
}

} // namespace

TEST_F(Watch, makes_the_icons_at_once_and_again_when_the_picture_is_written) {
    flatPicture(u"logo.png"_s, 64, 64, Qt::red);
    start(androidOf(u"logo.png"_s));
    ASSERT_TRUE(waitFor([&] { return errors.contains("waiting for changes"); })) << errors.toStdString();
    EXPECT_TRUE(isNear(color(), Qt::red));
    flatPicture(u"logo.png"_s, 64, 64, Qt::green);
    EXPECT_TRUE(waitForRuns(2)) << errors.toStdString();
    EXPECT_TRUE(isNear(color(), Qt::green));
    EXPECT_EQ(end(SIGINT), 0);
}

TEST_F(Watch, sees_a_save_that_puts_another_file_in_the_pictures_place) {
    flatPicture(u"logo.png"_s, 64, 64, Qt::red);
    start(androidOf(u"logo.png"_s));
    ASSERT_TRUE(waitFor([&] { return errors.contains("waiting for changes"); }));
    int run = 1;
    // Twice: a watch that follows the first file alone would miss the second save.
    for (const QColor& wanted : {QColor(Qt::green), QColor(Qt::blue)}) {
        const QString other = flatPicture(u"other.png"_s, 64, 64, wanted);
        ASSERT_EQ(rename(other.toLocal8Bit().constData(), path(u"logo.png"_s).toLocal8Bit().constData()), 0);
        ASSERT_TRUE(waitForRuns(++run)) << errors.toStdString();
        EXPECT_TRUE(isNear(color(), wanted));
    }
    EXPECT_EQ(end(SIGTERM), 0);
}

TEST_F(Watch, waits_for_a_picture_that_is_gone_for_a_moment) {
    flatPicture(u"logo.png"_s, 64, 64, Qt::red);
    start(androidOf(u"logo.png"_s));
    ASSERT_TRUE(waitFor([&] { return errors.contains("waiting for changes"); }));
    ASSERT_TRUE(QFile::remove(path(u"logo.png"_s)));
    QThread::msleep(300);
    flatPicture(u"logo.png"_s, 64, 64, Qt::blue);
    EXPECT_TRUE(waitForColor(Qt::blue)) << errors.toStdString();
    EXPECT_FALSE(errors.contains("error")) << errors.toStdString();
}

TEST_F(Watch, many_saves_in_a_row_make_one_run) {
    flatPicture(u"logo.png"_s, 64, 64, Qt::red);
    start(androidOf(u"logo.png"_s));
    ASSERT_TRUE(waitFor([&] { return errors.contains("waiting for changes"); }));
    for (int i = 0; i < 10; ++i) {
        flatPicture(u"logo.png"_s, 64, 64, i < 9 ? QColor(10 * i, 0, 0) : QColor(Qt::blue));
        QThread::msleep(20);
    }
    EXPECT_TRUE(waitForColor(Qt::blue));
    waitForNothing();
    // Ten saves may take longer on a busy machine, but never ten runs.
    EXPECT_LE(runs(), 3);
    EXPECT_GE(runs(), 2);
}

TEST_F(Watch, tells_of_a_broken_picture_and_goes_on) {
    flatPicture(u"logo.png"_s, 64, 64, Qt::red);
    start(androidOf(u"logo.png"_s));
    ASSERT_TRUE(waitFor([&] { return errors.contains("waiting for changes"); }));
    file(u"logo.png"_s, "no picture");
    ASSERT_TRUE(waitFor([&] { return errors.contains("error: logo.png"); })) << errors.toStdString();
    EXPECT_TRUE(isNear(color(), Qt::red)) << "the icons that were there stay";
    flatPicture(u"logo.png"_s, 64, 64, Qt::green);
    EXPECT_TRUE(waitForColor(Qt::green)) << errors.toStdString();
    EXPECT_EQ(end(SIGINT), 0);
}

TEST_F(Watch, its_own_output_is_no_change) {
    flatPicture(u"logo.png"_s, 64, 64, Qt::red);
    start({u"logo.png"_s, u"--layout"_s, u"web"_s, u"--out"_s, u"."_s, u"--watch"_s});
    ASSERT_TRUE(waitFor([&] { return errors.contains("waiting for changes"); }));
    const QDateTime written = QFileInfo(path(u"favicon.ico"_s)).lastModified();
    waitForNothing();
    EXPECT_EQ(QFileInfo(path(u"favicon.ico"_s)).lastModified(), written);
}

TEST_F(Watch, follows_the_file_of_the_project_and_what_it_names) {
    flatPicture(u"one.png"_s, 64, 64, Qt::red);
    flatPicture(u"two.png"_s, 64, 64, Qt::blue);
    const QByteArray rest = "out = \"icons\"\nplatform = \"android\"\n";
    file(u"tobrimax.toml"_s, "picture = \"one.png\"\n" + rest);
    start({u"--watch"_s});
    ASSERT_TRUE(waitFor([&] { return errors.contains("waiting for changes"); })) << errors.toStdString();
    EXPECT_TRUE(isNear(color(), Qt::red));
    file(u"tobrimax.toml"_s, "pictur = 1\n");
    ASSERT_TRUE(waitFor([&] { return errors.contains("pictur"); }));
    file(u"tobrimax.toml"_s, "picture = \"two.png\"\n" + rest);
    EXPECT_TRUE(waitForColor(Qt::blue)) << errors.toStdString();
    waitForNothing();
    flatPicture(u"two.png"_s, 64, 64, Qt::green);
    EXPECT_TRUE(waitForColor(Qt::green)) << errors.toStdString();
    EXPECT_EQ(end(SIGTERM), 0);
}

TEST_F(Watch, excludes_what_has_no_end) {
    flatPicture(u"logo.png"_s, 64, 64);
    for (const QString& option : {u"--json"_s, u"--check"_s, u"--dry-run"_s, u"--open"_s}) {
        const ProcessResult result = generate(u"logo.png"_s, {u"--watch"_s, option});
        EXPECT_EQ(result.exitStatus, 2) << option.toStdString();
        EXPECT_TRUE(result.errors.contains("exclude each other")) << result.errors.toStdString();
    }
    EXPECT_EQ(generate(u"-"_s, {u"--watch"_s}).exitStatus, 2);
    EXPECT_EQ(runCli({u"generate"_s, u"logo.png"_s, u"--out"_s, u"-"_s, u"--watch"_s}, path({})).exitStatus,
              2);
}
