#pragma once

#include <QObject>

class AppDelegate;
class QAction;
class QMainWindow;
class QMenu;
class QMenuBar;

/// The application's menus, in the main window or where the desktop has its menus.
class MainMenu final : public QObject {
    Q_OBJECT

  public:
    /// Gives `window` its menu bar. Both must live as long as the menu.
    MainMenu(AppDelegate& delegate, QMainWindow& window);

  private:
    void addApplicationMenu(QMenuBar& bar);
    void addFileMenu(QMenuBar& bar);
    void addEditMenu(QMenuBar& bar);
    void addViewMenu(QMenuBar& bar);
    void addWindowMenu(QMenuBar& bar);
    void addHelpMenu(QMenuBar& bar);
    void validateEdit();

    AppDelegate& m_delegate;
    QMainWindow& m_window;
    QAction* m_undo = nullptr;
    QAction* m_redo = nullptr;
    QAction* m_copy = nullptr;
    QAction* m_paste = nullptr;
};
