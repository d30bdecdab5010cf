#include "platform/services/Workspace.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <memory>
#include <optional>

namespace {

/// Delivers events until `condition` holds. False where it does not within ten seconds.
bool waitFor(const std::function<bool()>& condition) {
    constexpr int limit = 10'000;
    QElapsedTimer timer;
    timer.start();
    while (!condition() && timer.elapsed() < limit) {
        QCoreApplication::processEvents();
        QThread::msleep(1);
    }
    return condition();
}

/// Delivers events for `milliseconds`, and once at least.
void settle(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    do
        QCoreApplication::processEvents();
    while (timer.elapsed() < milliseconds);
}

/// An opener that the test writes stands in for the desktop's.
class WorkspaceTest : public testing::Test {
  protected:
    WorkspaceTest() { qputenv("PATH", folder.path().toLocal8Bit() + ":/usr/bin:/bin"); }
    ~WorkspaceTest() override {
        qputenv("PATH", path);
        const qint64 process = noted(QStringLiteral("process")).toLongLong();
        if (process > 1)
            kill(static_cast<pid_t>(process), SIGKILL);
    }

    void writeOpener(const QByteArray& script) {
        QFile file(folder.filePath(QStringLiteral("xdg-open")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + script + '\n');
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    QByteArray noted(const QString& name) const {
        QFile file(folder.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
    }

    void open() {
        timer.start();
        workspace.openURLWithCompletionHandler(page, &receiver, [this](bool isOpened) {
            ++answers;
            answer = isOpened;
        });
    }

    QByteArray path = qgetenv("PATH");
    QTemporaryDir folder;
    Workspace workspace;
    QUrl page{QStringLiteral("macappstore://itunes.example/app/id1?ls=1&mt=8")};
    QObject receiver;
    QElapsedTimer timer;
    int answers = 0;
    std::optional<bool> answer;
};

} // namespace

TEST_F(WorkspaceTest, an_opener_that_succeeds_has_opened_the_address) {
    writeOpener("printf '%s' \"$# $1\" > \"${0%/*}/asked\"");
    open();
    EXPECT_FALSE(answer.has_value()) << "the answer comes later";
    ASSERT_TRUE(waitFor([this] { return answer.has_value(); }));
    EXPECT_EQ(answer, true);
    EXPECT_EQ(noted(QStringLiteral("asked")), "1 " + page.toEncoded());
}

TEST_F(WorkspaceTest, an_opener_that_starts_and_then_fails_has_not) {
    for (const QByteArray& ending :
         {QByteArray("exit 3"), QByteArray("sleep 0.3; exit 4"), QByteArray("kill -9 $$")}) {
        SCOPED_TRACE(ending.constData());
        answer.reset();
        writeOpener(ending);
        open();
        ASSERT_TRUE(waitFor([this] { return answer.has_value(); }));
        EXPECT_EQ(answer, false);
    }
    EXPECT_EQ(answers, 3);
}

TEST_F(WorkspaceTest, an_opener_that_cannot_be_started_has_not) {
    writeOpener({});
    QFile file(folder.filePath(QStringLiteral("xdg-open")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("#!/nowhere/at/all\n");
    file.close();
    open();
    ASSERT_TRUE(waitFor([this] { return answer.has_value(); }));
    EXPECT_EQ(answer, false);
}

TEST_F(WorkspaceTest, without_an_opener_nothing_is_opened) {
    qputenv("PATH", folder.path().toLocal8Bit());
    open();
    ASSERT_TRUE(waitFor([this] { return answer.has_value(); }));
    EXPECT_EQ(answer, false);
}

TEST_F(WorkspaceTest, no_answer_within_two_seconds_counts_as_opened_and_the_opener_goes_on) {
    writeOpener("echo $$ > \"${0%/*}/process\"; exec sleep 10");
    open();
    EXPECT_LT(timer.elapsed(), 1000) << "events are served meanwhile";
    ASSERT_TRUE(waitFor([this] { return answer.has_value(); }));
    EXPECT_EQ(answer, true);
    EXPECT_GE(timer.elapsed(), 1900);
    EXPECT_LT(timer.elapsed(), 6000);
    const auto process = static_cast<pid_t>(noted(QStringLiteral("process")).toLongLong());
    ASSERT_GT(process, 1);
    EXPECT_EQ(kill(process, 0), 0);
    EXPECT_EQ(kill(process, SIGKILL), 0);
    settle(0);
    EXPECT_EQ(answers, 1) << "an end that comes later changes nothing";
}

TEST_F(WorkspaceTest, a_receiver_that_is_gone_is_not_told) {
    writeOpener("sleep 0.2; : > \"${0%/*}/done\"");
    auto gone = std::make_unique<QObject>();
    workspace.openURLWithCompletionHandler(page, gone.get(), [this](bool) { ++answers; });
    gone.reset();
    ASSERT_TRUE(waitFor([this] { return QFile::exists(folder.filePath(QStringLiteral("done"))); }));
    settle(100);
    EXPECT_EQ(answers, 0);
}

TEST_F(WorkspaceTest, an_application_that_ends_counts_it_as_opened_and_leaves_the_opener_alone) {
    writeOpener("echo $$ > \"${0%/*}/process\"; exec sleep 10");
    QTimer::singleShot(0, qApp, [this] { open(); });
    QTimer::singleShot(300, qApp, [] { QCoreApplication::exit(0); });
    QCoreApplication::exec();
    EXPECT_EQ(answer, true);
    EXPECT_EQ(answers, 1);
    EXPECT_LT(timer.elapsed(), 1900);
    const auto process = static_cast<pid_t>(noted(QStringLiteral("process")).toLongLong());
    ASSERT_GT(process, 1);
    EXPECT_EQ(kill(process, 0), 0);
}
