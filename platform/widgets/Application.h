#pragma once

#include "platform/services/NotificationCenter.h"

#include <QApplication>

class Application;

/// Is told of the application's launch, activation and end, and may refuse the end. All calls come on the
/// main thread.
class ApplicationDelegate {
  public:
    enum class TerminateReply { Cancel = 0, Now = 1 };

    virtual ~ApplicationDelegate() = default;

    /// Called once, when the event loop has begun.
    virtual void applicationDidFinishLaunching(const Notification& notification) = 0;

    /// Called by `terminate`; Cancel keeps the program running.
    virtual TerminateReply applicationShouldTerminate(Application* sender) = 0;

    virtual void applicationWillTerminate(const Notification& notification) = 0;
    virtual void applicationDidBecomeActive(const Notification& notification) = 0;
    virtual void applicationWillResignActive(const Notification& notification) = 0;
};

/// The application's event loop, with a delegate and one way to end. It goes on when no window is open.
///
/// When a window or dialog is about to close, by its close box or by the program, `windowWillClose` is posted
/// to the default notification center, with the window as its object.
class Application : public QApplication {
    Q_OBJECT

  public:
    static const QString windowWillClose;

    /// QApplication keeps both arguments; they must live as long as the application.
    Application(int& argc, char** argv);

    /// The application of this process. Null before it is made, or where it is of another class.
    static Application* sharedApplication();

    /// Not owned; may be null. Set it before `run`.
    void setDelegate(ApplicationDelegate* delegate) { m_delegate = delegate; }
    ApplicationDelegate* delegate() const { return m_delegate; }

    /// Runs the event loop until it ends. Returns the process's exit status.
    int run();

    /// Asks the delegate and, if the delegate agrees, ends the event loop with status 0. Further calls do
    /// nothing while the delegate is being asked and after it has agreed. `sender` is ignored.
    void terminate(QObject* sender);

    /// Ends the innermost dialog that blocks all windows, if there is one.
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
