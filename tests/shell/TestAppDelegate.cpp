#include "shell/AppDelegate.h"
#include "tests/generation/FakeSurroundings.h"
#include "tests/support/Events.h"
#include "tests/support/RecordingLog.h"

#include <QFileDialog>
#include <QMainWindow>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

class AppDelegateTest : public testing::Test {
  protected:
    AppDelegateTest() { application.setDelegate(&delegate); }
    ~AppDelegateTest() override { application.setDelegate(nullptr); }

    /// Runs the application, does `steps` one after another once it is launched, and then ends it.
    int run(std::vector<std::function<void()>> steps) {
        QTimer timer;
        std::size_t next = 0;
        QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
            if (next < steps.size())
                steps[next++]();
            else
                QCoreApplication::exit(99);
        });
        timer.start(30);
        return application.run();
    }

    QWidget* mainWindow() { return delegate.mainWindowController()->window(); }

    Application& application = *Application::sharedApplication();
    QTemporaryDir folder;
    FakeBundle bundle;
    FakeScreen screen;
    FakeWorkspace workspace;
    UserDefaults defaults{folder.filePath(QStringLiteral("settings.ini"))};
    RecordingLog log;
    AppDelegate delegate{{application, {bundle, screen, workspace}, defaults}};
};

TEST_F(AppDelegateTest, launching_shows_the_main_window) {
    bool isShown = false;
    EXPECT_EQ(run({[&] { isShown = mainWindow()->isVisible(); }}), 99) << "nothing else ends it";
    EXPECT_TRUE(isShown);
    EXPECT_EQ(delegate.window(), mainWindow());
    EXPECT_EQ(delegate.mainWindowController()->windowNibName(), QStringLiteral("MainWindowController"));
    EXPECT_TRUE(defaults.allKeys().isEmpty());
}

TEST_F(AppDelegateTest, setting_up_twice_makes_one_controller) {
    delegate.setupInitialController();
    const MainWindowController* first = delegate.mainWindowController();
    mainWindow()->hide();
    delegate.setupInitialController();
    EXPECT_EQ(delegate.mainWindowController(), first);
    EXPECT_TRUE(mainWindow()->isVisible());
}

TEST_F(AppDelegateTest, closing_the_main_window_ends_the_program) {
    EXPECT_EQ(run({[&] { mainWindow()->close(); }}), 0);
    EXPECT_EQ(log.lines(), QStringList(QStringLiteral("closing Window Class QMainWindow")));
}

TEST_F(AppDelegateTest, the_handling_is_queued) {
    QStringList linesAtOnce;
    run({[&] {
        mainWindow()->close();
        linesAtOnce = log.lines();
    }});
    EXPECT_TRUE(linesAtOnce.isEmpty());
    EXPECT_EQ(log.lines().size(), 1);
}

TEST_F(AppDelegateTest, any_other_window_is_logged_by_its_class_and_nothing_more) {
    EXPECT_EQ(run({[&] {
                  auto* dialog = new QFileDialog(mainWindow());
                  dialog->setAttribute(Qt::WA_DeleteOnClose);
                  dialog->open();
                  // The dialog is gone before its closing is handled.
                  dialog->close();
                  delete dialog;
              }}),
              99);
    EXPECT_EQ(log.lines(), QStringList(QStringLiteral("closing Window Class QFileDialog")));
}

TEST_F(AppDelegateTest, closing_the_promotion_window_ends_the_program_without_a_note) {
    QWidget promotion;
    QCheckBox dontShow(&promotion);
    delegate.setWindowPromotion(&promotion);
    delegate.setBtnCheckDontShow(&dontShow);
    promotion.show();
    EXPECT_EQ(run({[&] { promotion.close(); }}), 0);
    EXPECT_TRUE(defaults.allKeys().isEmpty());
}

TEST_F(AppDelegateTest, closing_the_promotion_window_with_its_box_checked_is_remembered) {
    QWidget promotion;
    QCheckBox dontShow(&promotion);
    dontShow.setChecked(true);
    delegate.setWindowPromotion(&promotion);
    delegate.setBtnCheckDontShow(&dontShow);
    promotion.show();
    EXPECT_EQ(run({[&] { promotion.close(); }}), 0);
    EXPECT_EQ(defaults.allKeys(), QStringList(QStringLiteral("notShowPromotionWindow")));
    EXPECT_TRUE(defaults.boolForKey(QStringLiteral("notShowPromotionWindow")));
}

TEST_F(AppDelegateTest, the_quit_button_does_the_same) {
    QCheckBox dontShow;
    delegate.setBtnCheckDontShow(&dontShow);
    EXPECT_EQ(run({[&] { delegate.btnQuitApp(nullptr); }}), 0);
    EXPECT_TRUE(defaults.allKeys().isEmpty());
    dontShow.setChecked(true);
    EXPECT_EQ(run({[&] { delegate.btnQuitApp(nullptr); }}), 0);
    EXPECT_TRUE(defaults.boolForKey(QStringLiteral("notShowPromotionWindow")));
}

TEST_F(AppDelegateTest, both_handlers_lead_to_the_same_rule) {
    EXPECT_EQ(
        run({[&] {
            delegate.mainWindowCloseNotification({Application::windowWillClose, mainWindow(), "QMainWindow"});
        }}),
        0);
    EXPECT_EQ(log.lines(), QStringList(QStringLiteral("closing Window Class QMainWindow")));
}

TEST_F(AppDelegateTest, help_opens_the_makers_site_whatever_comes_of_it) {
    class RefusingWorkspace final : public Workspace {
      public:
        QUrl asked;
        bool openURL(const QUrl& url) override {
            asked = url;
            return false;
        }
    };
    RefusingWorkspace refusing;
    AppDelegate other({application, {bundle, screen, refusing}, defaults});
    other.showHelpUrl(nullptr);
    EXPECT_EQ(refusing.asked.scheme(), QStringLiteral("http"));
    EXPECT_FALSE(refusing.asked.host().isEmpty());
}

TEST_F(AppDelegateTest, the_plain_window_style_can_be_asked_for) {
    delegate.setupWindowStyle(); // without a window yet
    delegate.setupInitialController();
    const Qt::WindowFlags before = mainWindow()->windowFlags();
    delegate.setupWindowStyle();
    EXPECT_NE(mainWindow()->windowFlags(), before);
    EXPECT_EQ(mainWindow()->palette().color(QPalette::Window), QColor(Qt::white));
    EXPECT_TRUE(mainWindow()->testAttribute(Qt::WA_TranslucentBackground));
    const Qt::WindowFlags flags = mainWindow()->windowFlags();
    EXPECT_TRUE(flags.testFlag(Qt::WindowTitleHint));
    EXPECT_TRUE(flags.testFlag(Qt::WindowCloseButtonHint));
    EXPECT_TRUE(flags.testFlag(Qt::WindowMinimizeButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMaximizeButtonHint));
    EXPECT_EQ(mainWindow()->windowTitle(), QString());
    EXPECT_TRUE(mainWindow()->isVisible());
}

} // namespace
