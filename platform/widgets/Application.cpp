#include "platform/widgets/Application.h"

#include <QCloseEvent>
#include <QDialog>
#include <QTimer>
#include <QWidget>

const QString Application::windowWillClose = QStringLiteral("NSWindowWillCloseNotification");

namespace {

/// Whether a widget is a window or a dialog, and not a menu, a tool tip or another pop-up.
bool isOrdinaryWindow(const QWidget& widget) {
    switch (widget.windowType()) {
    case Qt::Window:
    case Qt::Dialog:
    case Qt::Sheet:
    case Qt::Tool:
        return true;
    default:
        return false;
    }
}

} // namespace

Application::Application(int& argc, char** argv) : QApplication(argc, argv) {
    setQuitOnLastWindowClosed(false);
    connect(this, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (m_delegate == nullptr)
            return;
        if (state == Qt::ApplicationActive)
            m_delegate->applicationDidBecomeActive(notification("NSApplicationDidBecomeActiveNotification"));
        else
            m_delegate->applicationWillResignActive(
                notification("NSApplicationWillResignActiveNotification"));
    });
}

Application* Application::sharedApplication() {
    return qobject_cast<Application*>(QCoreApplication::instance());
}

Notification Application::notification(const char* name) {
    return {QString::fromLatin1(name), this, metaObject()->className()};
}

int Application::run() {
    m_state = State::Running;
    QTimer::singleShot(0, this, [this] {
        if (m_delegate != nullptr)
            m_delegate->applicationDidFinishLaunching(
                notification("NSApplicationDidFinishLaunchingNotification"));
    });
    const int status = exec();
    if (m_delegate != nullptr)
        m_delegate->applicationWillTerminate(notification("NSApplicationWillTerminateNotification"));
    return status;
}

void Application::terminate(QObject* /*sender*/) {
    if (m_state != State::Running)
        return;
    m_state = State::Asking;
    using Reply = ApplicationDelegate::TerminateReply;
    const Reply reply = m_delegate != nullptr ? m_delegate->applicationShouldTerminate(this) : Reply::Now;
    m_state = reply == Reply::Now ? State::Terminating : State::Running;
    if (reply == Reply::Now)
        exit(0);
}

void Application::stopModal() {
    constexpr int stoppedReturn = -1000;
    auto* dialog = qobject_cast<QDialog*>(activeModalWidget());
    if (dialog != nullptr && dialog->windowModality() == Qt::ApplicationModal)
        dialog->done(stoppedReturn);
}

bool Application::notify(QObject* receiver, QEvent* event) {
    if (event->type() != QEvent::Close)
        return QApplication::notify(receiver, event);
    auto* window = qobject_cast<QWidget*>(receiver);
    const bool isClosing =
        window != nullptr && window->isWindow() && window->isVisible() && isOrdinaryWindow(*window);
    const QPointer<QWidget> guarded = window;
    const bool result = QApplication::notify(receiver, event);
    // The window decides whether it closes: it may ignore the event.
    if (isClosing && !guarded.isNull() && event->isAccepted())
        NotificationCenter::defaultCenter().postNotification(windowWillClose, guarded);
    return result;
}

bool Application::event(QEvent* event) {
    // The desktop asks the program to end, for instance from its dock. Qt would close every window first.
    if (event->type() == QEvent::Quit && m_state != State::Terminating) {
        event->ignore();
        terminate(this);
        return true;
    }
    return QApplication::event(event);
}
