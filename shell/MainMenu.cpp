#include "shell/MainMenu.h"

#include "files/PathBytes.h"
#include "mainwindow/MainWindowController.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/ChangeFollower.h"
#include "platform/widgets/ColorWell.h"
#include "shell/AboutBox.h"

#include <QAction>
#include <QActionGroup>
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
    new ChangeFollower(*control, QEvent::EnabledChange, *action,
                       [action, control] { action->setEnabled(control->isEnabled()); });
}

} // namespace

MainMenu::MainMenu(MainWindowController& controller, QMainWindow& window,
                   std::function<QUndoStack*()> undoManager)
    : QObject(&window), m_controller(controller), m_window(window), m_undoManager(std::move(undoManager)) {
    QMenuBar& bar = *window.menuBar();
    addFileMenu(bar);
    addEditMenu(bar);
    addViewMenu(bar);
    addWindowMenu(bar);
    addHelpMenu(bar);
}

void MainMenu::addFileMenu(QMenuBar& bar) {
    MainWindowController* controller = &m_controller;
    QMenu* menu = bar.addMenu(tr("&File"));
    menu->addAction(tr("&Open Picture…"), QKeySequence(QKeySequence::Open), controller,
                    &MainWindowController::openPicture);
    m_recent = menu->addMenu(tr("Open &Recent"));
    connect(menu, &QMenu::aboutToShow, this, &MainMenu::listRecent);
    connect(controller->imgViewIcon, &BorderImageView::pictureArrived, this, [this](const QString& path) {
        if (!path.isEmpty())
            m_recentPictures.add(path);
    });
    listRecent();
    menu->addSeparator();
    QAction* generate = menu->addAction(tr("&Generate…"), QKeySequence(Qt::CTRL | Qt::Key_G),
                                        controller->generateBtn.data(), &QPushButton::click);
    followControl(generate, controller->generateBtn);
    QAction* project =
        menu->addAction(tr("Generate for a &Project…"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_G),
                        controller, &MainWindowController::generateForProject);
    const auto follow = [project, controller] { project->setEnabled(controller->hasPicture()); };
    connect(controller->imgViewIcon, &BorderImageView::pictureArrived, project, follow);
    connect(controller->imgViewIcon, &BorderImageView::pictureRefused, project, follow);
    follow();
    menu->addSeparator();
    QAction* close =
        menu->addAction(tr("&Close"), QKeySequence(QKeySequence::Close), this, closeActiveWindow);
    close->setShortcutContext(Qt::ApplicationShortcut);
    // Icons are written by Generate. This item has no shortcut, lest it be taken for that.
    menu->addAction(tr("&Save Application Data"), this, [this] { Q_EMIT saveAsked(this); });
    menu->addSeparator();
    QAction* quit = menu->addAction(tr("&Quit Tobrimax"), this,
                                    [this] { Application::sharedApplication()->terminate(this); });
    // macOS moves items of this role into the application's own menu.
    quit->setMenuRole(QAction::QuitRole);
    quit->setShortcut(QKeySequence(QKeySequence::Quit));
    quit->setShortcutContext(Qt::ApplicationShortcut);
}

/// Fills the menu of the pictures that were opened last. Other programs may have changed the list.
void MainMenu::listRecent() {
    m_recent->clear();
    for (const QString& path : m_recentPictures.paths()) {
        QString name = PathBytes::withReplacements(path.section(u'/', -1));
        // A single & would make its next letter a shortcut.
        QAction* item = m_recent->addAction(name.replace(u'&', QStringLiteral("&&")), this,
                                            [this, path] { m_controller.openFile(path); });
        item->setToolTip(PathBytes::withReplacements(path));
    }
    m_recent->setToolTipsVisible(true);
    m_recent->setEnabled(!m_recent->isEmpty());
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
    addPlatforms(*menu->addMenu(tr("&Platform")));
    menu->addSeparator();
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

/// Each item chooses a platform as the list in the window does.
void MainMenu::addPlatforms(QMenu& menu) {
    QComboBox* list = m_controller.platformSelection;
    auto* group = new QActionGroup(&menu);
    for (int index = 0; index < list->count(); ++index) {
        QAction* action = menu.addAction(list->itemText(index), QKeySequence(Qt::CTRL | (Qt::Key_1 + index)));
        action->setCheckable(true);
        action->setChecked(index == list->currentIndex());
        action->setActionGroup(group);
        connect(action, &QAction::triggered, list, [list, index] {
            list->setCurrentIndex(index);
            Q_EMIT list->activated(index);
        });
        followControl(action, list);
    }
    connect(list, &QComboBox::currentIndexChanged, group, [group](int index) {
        if (index >= 0 && index < group->actions().size())
            group->actions().at(index)->setChecked(true);
    });
}

void MainMenu::addWindowMenu(QMenuBar& bar) {
    QMenu* menu = bar.addMenu(tr("&Window"));
    menu->addAction(tr("&Minimise"), QKeySequence(Qt::CTRL | Qt::Key_M), &m_window, &QWidget::showMinimized);
    menu->addSeparator();
    menu->addAction(QStringLiteral("Tobrimax"), this, [this] { m_controller.showWindow(this); });
}

void MainMenu::addHelpMenu(QMenuBar& bar) {
    QMenu* menu = bar.addMenu(tr("&Help"));
    menu->addAction(tr("Tobrimax &Guide"), QKeySequence(QKeySequence::HelpContents), this,
                    &MainMenu::guideAsked);
    menu->addAction(tr("Tobrimax &Web Site"), this, [this] { Q_EMIT helpAsked(this); });
    menu->addSeparator();
    menu->addAction(tr("&More from Varnholt…"), this, &MainMenu::suggestionsAsked);
    menu->addSeparator();
    QAction* about = menu->addAction(tr("&About Tobrimax"), this, [this] {
        auto* box = new AboutBox(&m_window);
        box->show();
    });
    // macOS moves items of this role into the application's own menu.
    about->setMenuRole(QAction::AboutRole);
}
