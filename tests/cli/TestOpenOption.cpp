#include "tests/cli/CliTest.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

namespace {

/// Replaces the desktop's file browser with a script that records what it should open.
class OpenOption : public CliTest {
  protected:
    void SetUp() override {
        CliTest::SetUp();
        const QString browser =
            file(u"bin/xdg-open"_s, "#!/bin/sh\nprintf '%s\\n' \"$# $1\" >> \"${0%/*}/opened\"\n");
        ASSERT_TRUE(QFile::setPermissions(browser, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }

    ProcessResult generateHere(const QStringList& more) const {
        const QString folders = u"PATH="_s + path(u"bin"_s) + u':' + qEnvironmentVariable("PATH");
        return runProcess(u"env"_s,
                          QStringList{folders, QStringLiteral(TOBRIMAX_CLI), u"generate"_s, sample(u"svg"_s),
                                      u"--platform"_s, u"universal"_s} +
                              more,
                          path({}));
    }

    /// What a run opened. Waits for the first record, and a while longer in case there are more.
    QString opened(int mostMilliseconds) const {
        const QString record = path(u"bin/opened"_s);
        QElapsedTimer timer;
        timer.start();
        while (QFileInfo(record).size() == 0 && timer.elapsed() < mostMilliseconds)
            QThread::msleep(20);
        QThread::msleep(300);
        return QFileInfo::exists(record) ? QString::fromUtf8(content(record)) : QString();
    }
};

} // namespace

TEST_F(OpenOption, opens_the_absolute_folder_once_when_all_is_done) {
    const ProcessResult result = generateHere({u"--out"_s, u"my icons"_s, u"--open"_s});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(otherErrorLines(result), QStringList());
    const QString folder = QFileInfo(path(u"my icons"_s)).canonicalFilePath();
    EXPECT_EQ(opened(5000).toStdString(), "1 " + folder.toStdString() + "\n");
}

TEST_F(OpenOption, the_folder_of_several_pictures_is_opened_once) {
    flatPicture(u"second.png"_s, 64, 64);
    const ProcessResult result = generateHere({u"second.png"_s, u"--out"_s, u"my icons"_s, u"--open"_s});
    EXPECT_EQ(result.exitStatus, 0);
    const QString folder = QFileInfo(path(u"my icons"_s)).canonicalFilePath();
    EXPECT_EQ(opened(5000).toStdString(), "1 " + folder.toStdString() + "\n");
}

TEST_F(OpenOption, nothing_is_opened_without_it) {
    EXPECT_EQ(generateHere({u"--out"_s, u"my icons"_s}).exitStatus, 0);
    EXPECT_EQ(opened(500).toStdString(), "");
}

TEST_F(OpenOption, nothing_is_opened_where_the_usage_is_wrong) {
    const ProcessResult result = generateHere({u"--out"_s, u"my icons"_s, u"--open"_s, u"--border"_s});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_EQ(opened(500).toStdString(), "");
}

TEST_F(OpenOption, a_file_browser_that_is_missing_is_a_warning) {
    const ProcessResult result = runProcess(
        u"env"_s, {u"PATH="_s + path(u"none"_s), QStringLiteral(TOBRIMAX_CLI), u"generate"_s,
                   sample(u"svg"_s), u"--platform"_s, u"iphone"_s, u"--out"_s, out(), u"--open"_s});
    EXPECT_EQ(result.exitStatus, 0);
    const QStringList lines = otherErrorLines(result);
    ASSERT_EQ(lines.size(), 1) << result.errors.toStdString();
    EXPECT_TRUE(lines[0].startsWith(u"tobrimax-cli: warning: "_s)) << result.errors.toStdString();
    EXPECT_EQ(tree().size(), 9U);
}
