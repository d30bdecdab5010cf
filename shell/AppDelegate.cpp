#include "shell/AppDelegate.h"

#include "base/Log.h"
#include "platform/widgets/BackgroundMover.h"
#include "shell/MainMenu.h"
#include "shell/PromotionWindow.h"

#include <QCheckBox>
#include <QMainWindow>
#include <QPalette>
#include <QUrl>
#include <QWindow>

const QString AppDelegate::notShowPromotionWindow = QStringLiteral("notShowPromotionWindow");

namespace {

constexpr auto helpAddress = "http://www.varnholt.example/tobrimax/help";

} // namespace

AppDelegate::AppDelegate(Surroundings surroundings)
    : _surroundings(std::move(surroundings)), _promotion(std::make_unique<PromotionWindow>()) {
    connect(_promotion.get(), &PromotionWindow::openClicked, this, &AppDelegate::btnOpenSuggestedAppTapped);
    connect(_promotion.get(), &PromotionWindow::quitClicked, this, &AppDelegate::btnQuitApp);
    _windowPromotion = _promotion->window();
    _imgViewAppLogo = _promotion->imgViewAppLogo;
    _lblAppName = _promotion->lblAppName;
    _lblAppDesc = _promotion->lblAppDesc;
    _btnCheckDontShow = _promotion->btnCheckDontShow;
}

AppDelegate::~AppDelegate() {
    // The windows may lose activation while they are destroyed. The application would then call this
    // delegate.
    if (_surroundings.application.delegate() == this)
        _surroundings.application.setDelegate(nullptr);
}

void AppDelegate::applicationDidFinishLaunching(const Notification& /*notification*/) {
    setupInitialController();
    NotificationCenter::defaultCenter().addObserver(
        this, Application::windowWillClose,
        [this](const Notification& notification) { handleWindowClose(notification); });
    promotionWindowSetup();
    checkForRateupPopup();
}

void AppDelegate::setupInitialController() {
    if (windowController == nullptr) {
        windowController = MainWindowController::initWithWindowNibName(QStringLiteral("MainWindowController"),
                                                                       _surroundings.mainWindow);
        _window = windowController->window();
        auto* menu = new MainMenu(*windowController, *qobject_cast<QMainWindow*>(_window),
                                  [this] { return windowWillReturnUndoManager(_window); });
        connect(menu, &MainMenu::saveAsked, this, &AppDelegate::saveAction);
        connect(menu, &MainMenu::guideAsked, this, &AppDelegate::showGuide);
        connect(menu, &MainMenu::helpAsked, this, &AppDelegate::showHelpUrl);
        connect(menu, &MainMenu::suggestionsAsked, this, &AppDelegate::showPromotionWindow);
    }
    windowController->showWindow(this);
}

void AppDelegate::setupWindowStyle() {
    QWidget* styled = windowController != nullptr ? windowController->window() : nullptr;
    if (styled == nullptr)
        return;
    QPalette colors = styled->palette();
    colors.setColor(QPalette::Window, Qt::white);
    styled->setPalette(colors);
    styled->setAttribute(Qt::WA_TranslucentBackground);
    // WA_TranslucentBackground sets this attribute too. With it the white would not be painted.
    styled->setAttribute(Qt::WA_NoSystemBackground, false);
    // The window has a title bar and can be closed and minimised, but not resized.
    const bool wasVisible = styled->isVisible();
    styled->setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint |
                           Qt::WindowMinimizeButtonHint);
    if (styled->findChild<BackgroundMover*>() == nullptr)
        new BackgroundMover(*styled);
    // A window manager draws the title bar opaque. Without a text it is as plain as possible. Qt shows the
    // application's name in place of an empty title, so the title is a blank. A screen reader says the name.
    if (!styled->windowTitle().trimmed().isEmpty())
        styled->setAccessibleName(styled->windowTitle());
    styled->setWindowTitle(QStringLiteral(" "));
    // A window of the same X11 identity that is hidden and shown at once may stay hidden: the window manager
    // hears of the two in either order. A new one has no such past.
    styled->hide();
    if (QWindow* native = styled->windowHandle())
        native->destroy();
    styled->setVisible(wasVisible);
    styled->activateWindow();
}

void AppDelegate::handleWindowClose(const Notification& notification) {
    QMetaObject::invokeMethod(
        this, [this, notification] { handleWindowClose_Main(notification); }, Qt::QueuedConnection);
}

void AppDelegate::mainWindowCloseNotification(const Notification& notification) {
    QMetaObject::invokeMethod(
        this, [this, notification] { handleWindowClose_Main(notification); }, Qt::QueuedConnection);
}

void AppDelegate::handleWindowClose_Main(const Notification& notification) {
    logLine(QStringLiteral("closing Window Class %1").arg(QString::fromLatin1(notification.objectClassName)));
    if (notification.object.isNull())
        return;
    if (windowController != nullptr && windowController->isWindowLoaded() &&
        notification.object == windowController->window()) {
        terminate();
    } else if (notification.object == _windowPromotion) {
        rememberPromotionAnswer();
        terminate();
    }
}

void AppDelegate::rememberPromotionAnswer() {
    if (_btnCheckDontShow != nullptr && _btnCheckDontShow->checkState() != Qt::Unchecked)
        _surroundings.defaults.setBool(true, notShowPromotionWindow);
}

void AppDelegate::terminate() {
    Application& application = _surroundings.application;
    application.terminate(this);
    // The program goes on. Without its main window nobody could use it any more.
    if (!application.isTerminating() && windowController != nullptr &&
        !windowController->window()->isVisible())
        windowController->showWindow(this);
}

void AppDelegate::btnQuitApp(QObject* /*sender*/) {
    rememberPromotionAnswer();
    terminate();
}

void AppDelegate::showHelpUrl(QObject* /*sender*/) {
    _surroundings.mainWindow.workspace.openURL(QUrl(QString::fromLatin1(helpAddress)));
}

void AppDelegate::showGuide() {
    const QString guide = _surroundings.mainWindow.bundle.pathForDocument(QStringLiteral("docs/guide.md"));
    if (guide.isEmpty())
        showHelpUrl(this);
    else
        _surroundings.mainWindow.workspace.openURL(QUrl::fromLocalFile(guide));
}

void AppDelegate::applicationWillTerminate(const Notification& /*notification*/) {}

void AppDelegate::applicationDidBecomeActive(const Notification& /*notification*/) {}

void AppDelegate::applicationWillResignActive(const Notification& /*notification*/) {}
