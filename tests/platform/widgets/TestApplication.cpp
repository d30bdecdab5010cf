#include "platform/widgets/Alert.h"
#include "platform/widgets/Application.h"
#include "tests/support/Events.h"

#include <QCloseEvent>
#include <QFileDialog>
#include <QMenu>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

class RecordingDelegate final : public ApplicationDelegate {
  public:
    QStringList calls;
    TerminateReply reply = TerminateReply::Now;
    std::function<void()> onLaunch = [] {};
    std::function<void()> onAsk = [] {};

    void applicationDidFinishLaunching(const Notification& /*notification*/) override {
        calls << QStringLiteral("launched");
        onLaunch();
    }
    TerminateReply applicationShouldTerminate(Application* /*sender*/) override {
        calls << QStringLiteral("asked");
        onAsk();
        return reply;
    }
    void applicationWillTerminate(const Notification& /*notification*/) override {
        calls << QStringLiteral("ending");
    }
    void applicationDidBecomeActive(const Notification& /*notification*/) override {}
    void applicationWillResignActive(const Notification& /*notification*/) override {}
};

class ApplicationTest : public testing::Test {
  protected:
    ApplicationTest() { application.setDelegate(&delegate); }
    ~ApplicationTest() override { application.setDelegate(nullptr); }

    Application& application = *Application::sharedApplication();
    RecordingDelegate delegate;
};

TEST_F(ApplicationTest, launches_asks_once_and_ends_with_status_0) {
    delegate.onLaunch = [this] {
        application.terminate(nullptr);
        application.terminate(nullptr);
    };
    EXPECT_EQ(application.run(), 0);
    EXPECT_EQ(delegate.calls,
              QStringList({QStringLiteral("launched"), QStringLiteral("asked"), QStringLiteral("ending")}));
}

TEST_F(ApplicationTest, goes_on_when_the_delegate_refuses) {
    delegate.reply = ApplicationDelegate::TerminateReply::Cancel;
    bool wasTerminating = true;
    delegate.onLaunch = [&] {
        application.terminate(nullptr);
        wasTerminating = application.isTerminating();
        delegate.reply = ApplicationDelegate::TerminateReply::Now;
        QTimer::singleShot(0, &application, [this] { application.terminate(nullptr); });
    };
    EXPECT_EQ(application.run(), 0);
    EXPECT_FALSE(wasTerminating);
    EXPECT_EQ(delegate.calls.count(QStringLiteral("asked")), 2);
}

TEST_F(ApplicationTest, a_request_while_the_question_is_open_is_no_second_question) {
    delegate.onAsk = [this] { application.terminate(nullptr); };
    delegate.onLaunch = [this] { application.terminate(nullptr); };
    EXPECT_EQ(application.run(), 0);
    EXPECT_EQ(delegate.calls.count(QStringLiteral("asked")), 1);
}

TEST_F(ApplicationTest, a_request_of_the_desktop_is_asked_too) {
    delegate.onLaunch = [this] {
        QEvent quit(QEvent::Quit);
        QCoreApplication::sendEvent(&application, &quit);
    };
    EXPECT_EQ(application.run(), 0);
    EXPECT_EQ(delegate.calls.count(QStringLiteral("asked")), 1);
}

TEST_F(ApplicationTest, does_not_end_with_its_last_window) {
    EXPECT_FALSE(QGuiApplication::quitOnLastWindowClosed());
}

class ReluctantWindow final : public QWidget {
  protected:
    void closeEvent(QCloseEvent* event) override { event->ignore(); }
};

class WindowWillCloseTest : public testing::Test {
  protected:
    WindowWillCloseTest() {
        NotificationCenter::defaultCenter().addObserver(
            &observer, Application::windowWillClose, [this](const Notification& notification) {
                closed << QString::fromLatin1(notification.objectClassName);
                wasVisible = qobject_cast<QWidget*>(notification.object)->isVisible();
            });
    }

    QObject observer;
    QStringList closed;
    bool wasVisible = false;
};

TEST_F(WindowWillCloseTest, is_posted_for_a_window_that_is_still_there) {
    QWidget window;
    window.show();
    EXPECT_TRUE(window.close());
    EXPECT_EQ(closed, QStringList(QStringLiteral("QWidget")));
    EXPECT_TRUE(wasVisible);
}

TEST_F(WindowWillCloseTest, is_posted_for_dialogs) {
    QFileDialog dialog;
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.open();
    EXPECT_TRUE(dialog.close());
    EXPECT_EQ(closed, QStringList(QStringLiteral("QFileDialog")));
}

TEST_F(WindowWillCloseTest, is_not_posted_for_a_window_that_stays) {
    ReluctantWindow window;
    window.show();
    EXPECT_FALSE(window.close());
    EXPECT_TRUE(closed.isEmpty());
}

TEST_F(WindowWillCloseTest, is_not_posted_for_menus_hidden_windows_and_parts_of_windows) {
    QMenu menu;
    menu.addAction(QStringLiteral("Item"));
    menu.popup(QPoint(0, 0));
    menu.close();
    QWidget hidden;
    hidden.close();
    QWidget window;
    QWidget part(&window);
    window.show();
    part.close();
    EXPECT_TRUE(closed.isEmpty());
}

} // namespace
