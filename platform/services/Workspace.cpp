#include "platform/services/Workspace.h"

#include <QDesktopServices>
#include <QGuiApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

#include <utility>

namespace {

constexpr int longestWaitMilliseconds = 2000;

bool isGraphical() {
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
}

/// The path of the desktop's program that opens addresses and tells the outcome. Empty without one.
QString openerPath() {
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
    return QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
#else
    return {};
#endif
}

/// A process for the opener, not started yet. It deletes itself at its end.
QProcess* newOpener() {
    // Destroying a QProcess kills its process, and some openers are the browser itself: they may go on when
    // the program ends. The parent is therefore never destroyed.
    static QObject& openers = *new QObject;
    auto* opener = new QProcess(&openers);
    opener->setProcessChannelMode(QProcess::ForwardedChannels);
    opener->setStandardInputFile(QProcess::nullDevice());
#ifdef Q_OS_UNIX
    // A signal from this program's terminal does not reach the browser.
    opener->setChildProcessModifier([] { static_cast<void>(setsid()); });
#endif
    QObject::connect(opener, &QProcess::finished, opener, &QObject::deleteLater);
    QObject::connect(opener, &QProcess::errorOccurred, opener, [opener](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            opener->deleteLater();
    });
    return opener;
}

/// Hands the first outcome that it is told to its handler. The receiver owns it.
class PendingOutcome final : public QObject {
  public:
    PendingOutcome(QObject* receiver, std::function<void(bool)> handler)
        : QObject(receiver), m_handler(std::move(handler)) {}

    void tell(bool isOpened) {
        const std::function<void(bool)> handler = std::exchange(m_handler, nullptr);
        if (!handler)
            return;
        deleteLater();
        handler(isOpened);
    }

  private:
    std::function<void(bool)> m_handler;
};

} // namespace

bool Workspace::openURL(const QUrl& url) {
    return isGraphical() && QDesktopServices::openUrl(url);
}

void Workspace::openURLWithCompletionHandler(const QUrl& url, QObject* receiver,
                                             std::function<void(bool)> completionHandler) {
    const QString program = isGraphical() ? openerPath() : QString();
    if (program.isEmpty()) {
        completionHandler(openURL(url));
        return;
    }
    auto* pending = new PendingOutcome(receiver, std::move(completionHandler));
    QProcess* opener = newOpener();
    QObject::connect(opener, &QProcess::finished, pending, [pending](int status, QProcess::ExitStatus end) {
        pending->tell(end == QProcess::NormalExit && status == 0);
    });
    QObject::connect(opener, &QProcess::errorOccurred, pending, [pending](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            pending->tell(false);
    });
    QTimer::singleShot(longestWaitMilliseconds, pending, [pending] { pending->tell(true); });
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, pending, [pending] { pending->tell(true); });
    opener->start(program, {url.toString(QUrl::FullyEncoded)});
}
