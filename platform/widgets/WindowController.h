#pragma once

#include <QObject>
#include <QString>
#include <QWidget>

#include <memory>

/// Owns one window. The window is loaded from a layout when it is first needed.
class WindowController : public QObject {
    Q_OBJECT

  public:
    ~WindowController() override;

    /// The name of the window's layout.
    const QString& windowNibName() const { return m_windowNibName; }

    /// The window. The first call loads it.
    QWidget* window();

    bool isWindowLoaded() const { return m_window != nullptr; }

    /// Shows the window in front of the others. `sender` is ignored.
    void showWindow(QObject* sender);

  protected:
    explicit WindowController(QString windowNibName);

    /// Makes the window from its layout and connects the outlets and actions.
    virtual std::unique_ptr<QWidget> loadWindow() = 0;

    /// Destroys the window. For a subclass that the window's parts refer to.
    void releaseWindow() { m_window.reset(); }

    /// Called once, as soon as the window is loaded.
    virtual void windowDidLoad();

  private:
    QString m_windowNibName;
    std::unique_ptr<QWidget> m_window;
};
