#pragma once

#include "mainwindow/MainWindowController.h"
#include "platform/UserDefaults.h"
#include "platform/widgets/Application.h"

#include <QCheckBox>
#include <QPointer>

class QTimer;

/// The root of the program: owns the main window, decides what closing a window and quitting mean.
class AppDelegate final : public QObject, public ApplicationDelegate {
    Q_OBJECT

  public:
    /// The key that remembers that the promotion window is not to be shown again.
    static const QString notShowPromotionWindow;

    /// What the delegate needs of the world around it, kept by reference.
    struct Surroundings {
        Application& application;
        MainWindowController::Surroundings mainWindow;
        UserDefaults& defaults;
    };

    explicit AppDelegate(const Surroundings& surroundings);
    ~AppDelegate() override;

    // Outlets.
    /// The window that sheets of the application itself hang on: the main window.
    QWidget* window() const { return _window; }
    QWidget* windowPromotion() const { return _windowPromotion; }
    void setWindowPromotion(QWidget* window) { _windowPromotion = window; }
    QCheckBox* btnCheckDontShow() const { return _btnCheckDontShow; }
    void setBtnCheckDontShow(QCheckBox* button) { _btnCheckDontShow = button; }

    /// Null until the launch.
    MainWindowController* mainWindowController() const { return windowController.get(); }

    void applicationDidFinishLaunching(const Notification& notification) override;
    TerminateReply applicationShouldTerminate(Application* sender) override;
    void applicationWillTerminate(const Notification& notification) override;
    void applicationDidBecomeActive(const Notification& notification) override;
    void applicationWillResignActive(const Notification& notification) override;

    /// Makes the main window's controller if there is none yet, and shows its window.
    void setupInitialController();

    /// Gives the main window a plain white look without a visible title. Nothing calls it.
    void setupWindowStyle();

    /// Handle the closing of a window later, on the main thread. The first is an observer of it.
    void handleWindowClose(const Notification& notification);
    void mainWindowCloseNotification(const Notification& notification);

    /// Closing the main window or the promotion window ends the program; no other window does.
    void handleWindowClose_Main(const Notification& notification);

    // Actions.
    void btnQuitApp(QObject* sender);
    void showHelpUrl(QObject* sender);

  private:
    void rememberPromotionAnswer();
    void terminate();

    Surroundings _surroundings;
    /// Never made.
    [[maybe_unused]] QTimer* timerOfApps = nullptr;
    std::unique_ptr<MainWindowController> windowController;
    QPointer<QWidget> _windowPromotion;
    QPointer<QCheckBox> _btnCheckDontShow;
    QPointer<QWidget> _window;
};
