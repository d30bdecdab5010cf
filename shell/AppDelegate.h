#pragma once

#include "mainwindow/MainWindowController.h"
#include "platform/services/UserDefaults.h"
#include "platform/store/ManagedObjectContext.h"
#include "platform/widgets/Application.h"
#include "shell/BFPageControl.h"
#include "shell/SuggestedApp.h"

#include <QCheckBox>
#include <QLabel>
#include <QPointer>

#include <functional>

class Alert;
class PromotionWindow;
class QTimer;
class QUndoStack;

/// The root of the program. It owns the main window, the saved data, the prompt to rate the program and the
/// promotion window, and decides what closing a window and quitting mean.
///
/// AppDelegate.cpp has the life of the application; SavedData, RatePrompt and Promotion have their own files.
class AppDelegate final : public QObject, public ApplicationDelegate, public BFPageControlDelegate {
    Q_OBJECT

  public:
    /// What the delegate needs of the world around it. References are kept.
    struct Surroundings {
        Application& application;
        MainWindowController::Surroundings mainWindow;
        UserDefaults& defaults;
        /// Whether there is anything at that path.
        std::function<bool(const QString& path)> fileExistsAtPath;
        /// Shows an error and waits; whether it was recovered from.
        std::function<bool(const StoreError& error)> presentError;
    };

    /// The keys of what is remembered from run to run.
    static const QString appOpenedCount;
    static const QString appVersion;
    static const QString notShowPromotionWindow;

    explicit AppDelegate(Surroundings surroundings);
    ~AppDelegate() override;

    // Outlets.
    /// The window that sheets of the application itself hang on: the main window.
    QWidget* window() const { return _window; }
    QWidget* windowPromotion() const { return _windowPromotion; }
    QLabel* lblAppName() const { return _lblAppName; }
    QLabel* lblAppDesc() const { return _lblAppDesc; }
    ImageView* imgViewAppLogo() const { return _imgViewAppLogo; }
    QCheckBox* btnCheckDontShow() const { return _btnCheckDontShow; }

    /// Null until the launch.
    MainWindowController* mainWindowController() const { return windowController.get(); }
    const std::vector<SuggestedApp>& suggestions() const { return arrOurApps; }
    BFPageControl* pageControl() const { return control; }
    qint32 selectedSuggestion() const { return selectedRecommendedAppIndex; }

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

    // Saved data.
    /// Where the store's file is. It need not exist.
    static QString applicationDocumentsDirectory();
    /// Each is made when it is first asked for, and kept. A store that can't be opened is shown, logged and
    /// ends the process.
    const ManagedObjectModel* managedObjectModel();
    PersistentStoreCoordinator* persistentStoreCoordinator();
    ManagedObjectContext* managedObjectContext();
    void saveAction(QObject* sender);
    /// The same for all windows.
    QUndoStack* windowWillReturnUndoManager(QWidget* window);

    // The prompt to rate the program.
    /// Counts this launch and, at every seventh of a build that was not answered for, asks a moment later.
    void checkForRateupPopup();
    void showAlertForRateApp();
    void alertDidEndClose(Alert* alert, int returnCode, void* contextInfo);

    // The promotion window.
    void promotionWindowSetup();
    bool isApplicationInstalledWithName(const QString& name) const;
    void setupPageControl();
    void pageControl(BFPageControl* sender, qint64 didSelectPageAtIndex) override;
    /// Goes on to the next suggestion, and from the last to the first. Nothing calls it.
    void changeAppDetail();
    void btnOpenSuggestedAppTapped(QObject* sender);
    void showPromotionWindow();

  private:
    void rememberPromotionAnswer();
    void terminate();
    QString currentBuild() const;
    void showSuggestion(qint64 index);
    [[noreturn]] void failWithoutStore(const QString& reason, const std::optional<StoreError>& underlying);

    Surroundings _surroundings;
    std::vector<SuggestedApp> arrOurApps;
    QPointer<BFPageControl> control;
    qint32 selectedRecommendedAppIndex = 0;
    /// Never made.
    [[maybe_unused]] QTimer* timerOfApps = nullptr;
    std::unique_ptr<MainWindowController> windowController;
    std::unique_ptr<const ManagedObjectModel> _managedObjectModel;
    std::unique_ptr<PersistentStoreCoordinator> _persistentStoreCoordinator;
    std::unique_ptr<ManagedObjectContext> _managedObjectContext;
    QPointer<ImageView> _imgViewAppLogo;
    QPointer<QLabel> _lblAppName;
    QPointer<QLabel> _lblAppDesc;
    QPointer<QWidget> _windowPromotion;
    QPointer<QCheckBox> _btnCheckDontShow;
    QPointer<QWidget> _window;

    std::unique_ptr<PromotionWindow> _promotion;
};
