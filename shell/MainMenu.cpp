#include "shell/MainMenu.h"

#include "mainwindow/MainWindowController.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/ColorWell.h"
#include "platform/widgets/EnabledFollower.h"
#include "shell/AboutBox.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QMainWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QUndoStack>

#include <utility>

namespace {

void closeActiveWindow() {
    if (QWidget* active = QApplication::activeWindow())
        active->close();
}

void followControl(QAction* action, QWidget* control) {
    new EnabledFollower(*control, *action, [action](bool isEnabled) { action->setEnabled(isEnabled); });
}

} // namespace

MainMenu::MainMenu(MainWindowController& controller, QMainWindow& window,
                   std::function<QUndoStack*()> undoManager)
    : QObject(&window), m_controller(controller), m_window(window), m_undoManager(std::move(undoManager)) {
    QMenuBar& bar = *window.menuBar();
    addApplicationMenu(bar);
    addFileMenu(bar);
    addEditMenu(bar);
    addViewMenu(bar);
    addWindowMenu(bar);
    addHelpMenu(bar);
}

void MainMenu::addApplicationMenu(QMenuBar& bar) {
    QMenu* menu = bar.addMenu(tr("&Tobrimax"));
    QAction* about = menu->addAction(tr("&About Tobrimax"), this, [this] {
        auto* box = new AboutBox(&m_window);
        box->show();
    });
    about->setMenuRole(QAction::AboutRole);
    menu->addSeparator();
    QAction* quit = menu->addAction(tr("&Quit Tobrimax"), this,
                                    [this] { Application::sharedApplication()->terminate(this); });
    quit->setMenuRole(QAction::QuitRole);
    quit->setShortcut(QKeySequence(QKeySequence::Quit));
    quit->setShortcutContext(Qt::ApplicationShortcut);
}

void MainMenu::addFileMenu(QMenuBar& bar) {
    MainWindowController* controller = &m_controller;
    QMenu* menu = bar.addMenu(tr("&File"));
    menu->addAction(tr("&Open Picture…"), QKeySequence(QKeySequence::Open), controller,
                    &MainWindowController::openPicture);
    QAction* generate = menu->addAction(tr("&Generate…"), QKeySequence(Qt::CTRL | Qt::Key_G),
                                        controller->generateBtn.data(), &QPushButton::click);
    followControl(generate, controller->generateBtn);
    menu->addSeparator();
    QAction* save = menu->addAction(tr("&Save"), QKeySequence(QKeySequence::Save), this,
                                    [this] { Q_EMIT saveAsked(this); });
    save->setShortcutContext(Qt::ApplicationShortcut);
    QAction* close =
        menu->addAction(tr("&Close"), QKeySequence(QKeySequence::Close), this, closeActiveWindow);
    close->setShortcutContext(Qt::ApplicationShortcut);
}

void MainMenu::addEditMenu(QMenuBar& bar) {
    MainWindowController* controller = &m_controller;
    QMenu* menu = bar.addMenu(tr("&Edit"));
    m_undo = menu->addAction(tr("&Undo"), QKeySequence(QKeySequence::Undo), this,
                             [this] { m_undoManager()->undo(); });
    m_redo = menu->addAction(tr("&Redo"), QKeySequence(QKeySequence::Redo), this,
                             [this] { m_undoManager()->redo(); });
    // Undo and Redo work in every window.
    m_undo->setShortcutContext(Qt::ApplicationShortcut);
    m_redo->setShortcutContext(Qt::ApplicationShortcut);
    menu->addSeparator();
    m_copy = menu->addAction(tr("&Copy"), QKeySequence(QKeySequence::Copy), controller,
                             &MainWindowController::copyPicture);
    m_paste = menu->addAction(tr("&Paste"), QKeySequence(QKeySequence::Paste), controller,
                              &MainWindowController::pastePicture);
    connect(menu, &QMenu::aboutToShow, this, &MainMenu::validateEdit);
    // A shortcut works only while its action is enabled. An action without anything to do does nothing.
    connect(menu, &QMenu::aboutToHide, this, [this] {
        for (QAction* action : {m_undo, m_redo, m_copy, m_paste})
            action->setEnabled(true);
    });
}

/// Sets which items are enabled, for as long as the menu is open. It is not done earlier: asking for the undo
/// stack loads the saved data, and another program may need time to tell what is on the clipboard.
void MainMenu::validateEdit() {
    const QUndoStack* undoManager = m_undoManager();
    m_undo->setEnabled(undoManager->canUndo());
    m_redo->setEnabled(undoManager->canRedo());
    m_copy->setEnabled(!m_controller.sourceImage().isNull());
    m_paste->setEnabled(MainWindowController::canPaste(QGuiApplication::clipboard()->mimeData()));
}

void MainMenu::addViewMenu(QMenuBar& bar) {
    MainWindowController* controller = &m_controller;
    QMenu* menu = bar.addMenu(tr("&View"));
    // Each item shows the state of its check box, and does what a click on the box does.
    const auto addSwitch = [&](const QString& text, QCheckBox* control) {
        QAction* action = menu->addAction(text);
        action->setCheckable(true);
        action->setChecked(control->isChecked());
        connect(action, &QAction::triggered, control, &QCheckBox::click);
        connect(control, &QCheckBox::toggled, action, &QAction::setChecked);
        followControl(action, control);
    };
    addSwitch(tr("&Rounded Corner"), controller->roundedCheckButton);
    addSwitch(tr("&Border"), controller->borderCheckButton);
    QAction* color =
        menu->addAction(tr("Border &Colour…"), controller->colorPicker.data(), &ColorWell::click);
    followControl(color, controller->colorPicker);
}

void MainMenu::addWindowMenu(QMenuBar& bar) {
    QMenu* menu = bar.addMenu(tr("&Window"));
    menu->addAction(tr("&Minimise"), QKeySequence(Qt::CTRL | Qt::Key_M), &m_window, &QWidget::showMinimized);
    menu->addSeparator();
    menu->addAction(QStringLiteral("Tobrimax"), this, [this] { m_controller.showWindow(this); });
}

void MainMenu::addHelpMenu(QMenuBar& bar) {
    QMenu* menu = bar.addMenu(tr("&Help"));
    menu->addAction(tr("Tobrimax &Help"), QKeySequence(QKeySequence::HelpContents), this,
                    [this] { Q_EMIT helpAsked(this); });
    menu->addSeparator();
    menu->addAction(tr("&More from Varnholt…"), this, &MainMenu::suggestionsAsked);
}
