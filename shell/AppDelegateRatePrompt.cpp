#include "platform/widgets/Alert.h"
#include "shell/AppDelegate.h"

#include <QTimer>
#include <QUrl>

namespace {

/// The program's number in the store. It is a placeholder until the program has its own.
constexpr int storeIdentifier = 100000000;

constexpr int launchesBeforePrompt = 6;
constexpr int promptDelayMilliseconds = 200;
constexpr int yesReturn = 1;
constexpr int noReturn = 0;

} // namespace

const QString AppDelegate::appOpenedCount = QStringLiteral("appOpenedCount");
const QString AppDelegate::appVersion = QStringLiteral("appVersion");

QString AppDelegate::currentBuild() const {
    return _surroundings.mainWindow.bundle.infoDictionary()
        .value(QStringLiteral("CFBundleVersion"))
        .toString();
}

void AppDelegate::checkForRateupPopup() {
    UserDefaults& defaults = _surroundings.defaults;
    const qint64 oldCount = defaults.integerForKey(appOpenedCount);
    // A broken settings file may hold the largest number. Adding 1 would overflow.
    defaults.setInteger(oldCount == std::numeric_limits<qint64>::max() ? oldCount : oldCount + 1,
                        appOpenedCount);
    defaults.synchronize();
    if (defaults.hasKey(appVersion) && defaults.stringForKey(appVersion) == currentBuild()) {
        defaults.setInteger(0, appOpenedCount);
        defaults.synchronize();
        return;
    }
    if (oldCount < launchesBeforePrompt)
        return;
    QTimer::singleShot(promptDelayMilliseconds, this, &AppDelegate::showAlertForRateApp);
    defaults.setInteger(0, appOpenedCount);
    defaults.synchronize();
}

void AppDelegate::showAlertForRateApp() {
    auto* alert = new Alert;
    alert->setMessageText(QStringLiteral("Rate Us"));
    alert->setInformativeText(
        QStringLiteral("If you enjoy using our app, would you like to rate us on app store?"));
    alert->addButtonWithTitle(QStringLiteral("YES"), yesReturn);
    alert->addButtonWithTitle(QStringLiteral("NO"), noReturn);
    alert->setAlertStyle(Alert::Style::Informational);
    alert->beginSheetModalForWindow(
        _window, [this, alert](int returnCode) { alertDidEndClose(alert, returnCode, nullptr); });
}

void AppDelegate::alertDidEndClose(Alert* /*alert*/, int returnCode, void* /*contextInfo*/) {
    const auto rememberAnswer = [this] { _surroundings.defaults.setString(currentBuild(), appVersion); };
    const QUrl storePage(
        QStringLiteral("macappstore://itunes.apple.com/app/id%1?ls=1&mt=8").arg(storeIdentifier));
    if (returnCode == noReturn)
        rememberAnswer();
    else
        _surroundings.mainWindow.workspace.openURLWithCompletionHandler(storePage, this,
                                                                        [rememberAnswer](bool isOpened) {
                                                                            if (isOpened)
                                                                                rememberAnswer();
                                                                        });
    // The outcome may come later. Another alert that is up by then is not to be ended.
    _surroundings.application.stopModal();
}
