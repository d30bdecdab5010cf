#pragma once

#include "platform/services/NotificationCenter.h"

#include <QApplication>

class Application;

/// Decides what the application's life means. All calls come on the main thread.
class ApplicationDelegate {
  public:
    enum class TerminateReply { Cancel = 0, Now = 1 };

    virtual ~ApplicationDelegate() = default;

    /// Once, when the event loop has begun.
    virtual void applicationDidFinishLaunching(const Notification& notification) = 0;

    /// Asked before every end of the program.
    virtual TerminateReply applicationShouldTerminate(Application* sender) = 0;

    virtual void applicationWillTerminate(const Notification& notification) = 0;
    virtual void applicationDidBecomeActive(const Notification& notification) = 0;
    virtual void applicationWillResignActive(const Notification& notification) = 0;
};

/// The application's event loop, with a delegate and one way to end. It goes on without any window.
///
/// When a window or dialog is about to close, by its close box or by the program, the default notification
/// center hears of `windowWillClose` with the window as its object.
class Application : public QApplication {
    Q_OBJECT

  public:
    static const QString windowWillClose;

    /// Both must live as long as the application, as Qt asks for.
    Application(int& argc, char** argv);

    /// The one of the process.
    static Application* sharedApplication();

    /// Kept by reference; to be set before `run`.
    void setDelegate(ApplicationDelegate* delegate) { m_delegate = delegate; }
    ApplicationDelegate* delegate() const { return m_delegate; }

    /// Runs the event loop; the process's exit status.
    int run();

    /// Asks the delegate and, if that agrees, ends the event loop. While the question is open or after it was
    /// agreed to, further calls do nothing.
    void terminate(QObject* sender);

    /// Ends the innermost alert that runs modally, if there is one.
    void stopModal();

    /// Whether the event loop is about to end.
    bool isTerminating() const { return m_state == State::Terminating; }

    bool notify(QObject* receiver, QEvent* event) override;

  protected:
    bool event(QEvent* event) override;

  private:
    enum class State { Running, Asking, Terminating };

    Notification notification(const char* name);

    ApplicationDelegate* m_delegate = nullptr;
    State m_state = State::Running;
};
