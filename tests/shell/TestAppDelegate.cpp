#include "platform/widgets/BackgroundMover.h"
#include "tests/shell/AppDelegateFixture.h"

#include <QAccessible>
#include <QFileDialog>
#include <QMainWindow>

namespace {

using AppDelegateTest = AppDelegateFixture;

TEST_F(AppDelegateTest, launching_shows_the_main_window) {
    bool isShown = false;
    EXPECT_EQ(run({[&] { isShown = mainWindow()->isVisible(); }}), notEnded) << "nothing else ends it";
    EXPECT_TRUE(isShown);
    EXPECT_EQ(delegate.window(), mainWindow());
    EXPECT_EQ(delegate.mainWindowController()->windowNibName(), QStringLiteral("MainWindowController"));
    EXPECT_FALSE(delegate.windowPromotion()->isVisible());
    EXPECT_EQ(defaults.allKeys(), QStringList(QStringLiteral("appOpenedCount")));
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
              notEnded);
    EXPECT_EQ(log.lines(), QStringList(QStringLiteral("closing Window Class QFileDialog")));
}

TEST_F(AppDelegateTest, closing_the_promotion_window_ends_the_program_without_a_note) {
    EXPECT_EQ(run({[&] { delegate.showPromotionWindow(); }, [&] { delegate.windowPromotion()->close(); }}),
              0);
    EXPECT_FALSE(defaults.allKeys().contains(QStringLiteral("notShowPromotionWindow")));
    EXPECT_EQ(log.lines(), QStringList(QStringLiteral("closing Window Class ELGRoundWindow")));
}

TEST_F(AppDelegateTest, closing_the_promotion_window_with_its_box_checked_is_remembered) {
    delegate.btnCheckDontShow()->setChecked(true);
    EXPECT_EQ(run({[&] { delegate.showPromotionWindow(); }, [&] { delegate.windowPromotion()->close(); }}),
              0);
    EXPECT_TRUE(defaults.boolForKey(QStringLiteral("notShowPromotionWindow")));
}

TEST_F(AppDelegateTest, the_quit_button_does_the_same) {
    EXPECT_EQ(run({[&] { delegate.btnQuitApp(nullptr); }}), 0);
    EXPECT_FALSE(defaults.allKeys().contains(QStringLiteral("notShowPromotionWindow")));
    delegate.btnCheckDontShow()->setChecked(true);
    EXPECT_EQ(run({[&] { delegate.btnQuitApp(nullptr); }}), 0);
    EXPECT_TRUE(defaults.boolForKey(QStringLiteral("notShowPromotionWindow")));
}

TEST_F(AppDelegateTest, a_refused_end_shows_the_main_window_again) {
    delegate.managedObjectContext()->registerEditor(&application, [] { return false; });
    bool isShown = false;
    EXPECT_EQ(run({[&] { mainWindow()->close(); }, [&] { isShown = mainWindow()->isVisible(); }}), notEnded);
    EXPECT_TRUE(isShown);
    EXPECT_FALSE(application.isTerminating());
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
    workspace.succeeds = false;
    delegate.showHelpUrl(nullptr);
    ASSERT_EQ(workspace.asked.size(), 1);
    EXPECT_EQ(workspace.asked.first().scheme(), QStringLiteral("http"));
    EXPECT_FALSE(workspace.asked.first().host().isEmpty());
}

TEST_F(AppDelegateTest, the_plain_window_style_can_be_asked_for) {
    delegate.setupWindowStyle(); // there is no window yet
    delegate.setupInitialController();
    const Qt::WindowFlags before = mainWindow()->windowFlags();
    delegate.setupWindowStyle();
    EXPECT_NE(mainWindow()->windowFlags(), before);
    EXPECT_EQ(mainWindow()->palette().color(QPalette::Window), QColor(Qt::white));
    EXPECT_TRUE(mainWindow()->testAttribute(Qt::WA_TranslucentBackground));
    QImage shown(mainWindow()->size(), QImage::Format_ARGB32_Premultiplied);
    shown.fill(Qt::transparent);
    mainWindow()->render(&shown);
    EXPECT_EQ(shown.pixelColor(2, shown.height() - 3), QColor(Qt::white));
    delegate.setupWindowStyle();
    EXPECT_EQ(mainWindow()->findChildren<BackgroundMover*>().size(), 1);
    const Qt::WindowFlags flags = mainWindow()->windowFlags();
    EXPECT_TRUE(flags.testFlag(Qt::WindowTitleHint));
    EXPECT_TRUE(flags.testFlag(Qt::WindowCloseButtonHint));
    EXPECT_TRUE(flags.testFlag(Qt::WindowMinimizeButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMaximizeButtonHint));
    // Qt would fill in an empty title. A screen reader still has the name.
    EXPECT_EQ(mainWindow()->windowTitle(), QStringLiteral(" "));
    const QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(mainWindow());
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("Tobrimax"));
    EXPECT_TRUE(mainWindow()->isVisible());
}

} // namespace
