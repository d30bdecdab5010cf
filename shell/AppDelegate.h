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
/// AppDelegate.cpp handles launch, closing and quitting. AppDelegateSavedData.cpp, AppDelegateRatePrompt.cpp
/// and AppDelegatePromotion.cpp hold the other parts.
class AppDelegate final : public QObject, public ApplicationDelegate, public BFPageControlDelegate {
    Q_OBJECT

  public:
    /// The services that the delegate uses. It keeps the references.
    struct Surroundings {
        Application& application;
        MainWindowController::Surroundings mainWindow;
        UserDefaults& defaults;
        /// Whether anything exists at `path`.
        std::function<bool(const QString& path)> fileExistsAtPath;
        /// Shows an error and waits until the user has closed it. Tells whether the program recovered from
        /// the error.
        std::function<bool(const StoreError& error)> presentError;
    };

    /// Keys of the values that are kept from run to run.
    static const QString appOpenedCount;
    static const QString appVersion;
    static const QString notShowPromotionWindow;

    explicit AppDelegate(Surroundings surroundings);
    ~AppDelegate() override;

    // Outlets.
    /// The main window. The application's own sheets are attached to it.
    QWidget* window() const { return _window; }
    QWidget* windowPromotion() const { return _windowPromotion; }
    QLabel* lblAppName() const { return _lblAppName; }
    QLabel* lblAppDesc() const { return _lblAppDesc; }
    ImageView* imgViewAppLogo() const { return _imgViewAppLogo; }
    QCheckBox* btnCheckDontShow() const { return _btnCheckDontShow; }

    /// Null before the launch.
    MainWindowController* mainWindowController() const { return windowController.get(); }
    const std::vector<SuggestedApp>& suggestions() const { return arrOurApps; }
    BFPageControl* pageControl() const { return control; }
    qint32 selectedSuggestion() const { return selectedRecommendedAppIndex; }

    void applicationDidFinishLaunching(const Notification& notification) override;
    TerminateReply applicationShouldTerminate(Application* sender) override;
    void applicationWillTerminate(const Notification& notification) override;
    void applicationDidBecomeActive(const Notification& notification) override;
    void applicationWillResignActive(const Notification& notification) override;

    /// Makes the main window's controller if it does not exist yet, and shows its window.
    void setupInitialController();

    /// Gives the main window a plain white look without a visible title. See docs/compatibility.md.
    void setupWindowStyle();

    /// Both handle the closing of a window later, from the main thread's event loop. `handleWindowClose`
    /// observes `Application::windowWillClose`.
    void handleWindowClose(const Notification& notification);
    void mainWindowCloseNotification(const Notification& notification);

    /// Logs the class of the window that closes. The main window and the promotion window also end the
    /// program.
    void handleWindowClose_Main(const Notification& notification);

    // Actions.
    void btnQuitApp(QObject* sender);
    void showHelpUrl(QObject* sender);
    /// Opens the installed guide. Where there is no guide, the maker's site.
    void showGuide();

    // Saved data.
    /// The folder of the store's file. It may not exist yet.
    static QString applicationDocumentsDirectory();
    /// Each is made on first use and kept. Where the store can't be opened, the error is shown and logged,
    /// and the process aborts.
    const ManagedObjectModel* managedObjectModel();
    PersistentStoreCoordinator* persistentStoreCoordinator();
    ManagedObjectContext* managedObjectContext();
    void saveAction(QObject* sender);
    /// The undo stack of the saved data. All windows share it; `window` is ignored.
    QUndoStack* windowWillReturnUndoManager(QWidget* window);

    // The prompt to rate the program.
    /// Counts this launch. Every seventh launch asks for a rating 0.2 seconds later, unless the user has
    /// already answered for this build.
    void checkForRateupPopup();
    void showAlertForRateApp();
    void alertDidEndClose(Alert* alert, int returnCode, void* contextInfo);

    // The promotion window.
    void promotionWindowSetup();
    bool isApplicationInstalledWithName(const QString& name) const;
    void setupPageControl();
    void pageControl(BFPageControl* sender, qint64 didSelectPageAtIndex) override;
    /// Goes on to the next suggestion, and from the last to the first. See docs/compatibility.md.
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
    /// See docs/compatibility.md.
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
