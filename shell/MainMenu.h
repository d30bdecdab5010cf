#pragma once

#include "shell/RecentPictures.h"

#include <QObject>

#include <functional>

class MainWindowController;
class QAction;
class QMainWindow;
class QMenu;
class QMenuBar;
class QUndoStack;

/// The application's menus. They are in the main window, or in the desktop's own menu bar.
class MainMenu final : public QObject {
    Q_OBJECT

  public:
    /// Gives `window`, the window of `controller`, its menu bar. The window owns this object; the controller
    /// must live as long. `undoManager` is called when Undo or Redo is used or shown. It never returns null.
    MainMenu(MainWindowController& controller, QMainWindow& window, std::function<QUndoStack*()> undoManager);

  Q_SIGNALS:
    void saveAsked(QObject* sender);
    void guideAsked();
    void helpAsked(QObject* sender);
    void suggestionsAsked();

  private:
    void addFileMenu(QMenuBar& bar);
    void addEditMenu(QMenuBar& bar);
    void addViewMenu(QMenuBar& bar);
    void addWindowMenu(QMenuBar& bar);
    void addHelpMenu(QMenuBar& bar);
    void addPlatforms(QMenu& menu);
    void validateEdit();
    void listRecent();

    MainWindowController& m_controller;
    QMainWindow& m_window;
    std::function<QUndoStack*()> m_undoManager;
    RecentPictures m_recentPictures;
    QMenu* m_recent = nullptr;
    QAction* m_undo = nullptr;
    QAction* m_redo = nullptr;
    QAction* m_copy = nullptr;
    QAction* m_paste = nullptr;
};
