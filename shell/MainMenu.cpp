#include "shell/MainMenu.h"

#include "mainwindow/BorderImageView.h"
#include "platform/widgets/ColorWell.h"
#include "shell/AboutBox.h"
#include "shell/AppDelegate.h"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QMainWindow>
#include <QMenuBar>
#include <QPushButton>

namespace {

void closeActiveWindow() {
    if (QWidget* active = QApplication::activeWindow())
        active->close();
}

/// Keeps an action enabled as long as a control is.
class EnabledFollower final : public QObject {
  public:
    EnabledFollower(QAction* action, QWidget* control) : QObject(action), m_action(action) {
        action->setEnabled(control->isEnabled());
        control->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::EnabledChange)
            m_action->setEnabled(static_cast<QWidget*>(watched)->isEnabled());
        return QObject::eventFilter(watched, event);
    }

  private:
    QAction* m_action;
};

void followControl(QAction* action, QWidget* control) {
    new EnabledFollower(action, control);
}

} // namespace

MainMenu::MainMenu(AppDelegate& delegate, QMainWindow& window)
    : QObject(&window), m_delegate(delegate), m_window(window) {
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
        box->open();
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
    MainWindowController* controller = m_delegate.mainWindowController();
    QMenu* menu = bar.addMenu(tr("&File"));
    menu->addAction(tr("&Open Picture…"), QKeySequence(QKeySequence::Open), controller,
                    &MainWindowController::openPicture);
    QAction* generate = menu->addAction(tr("&Generate…"), QKeySequence(Qt::CTRL | Qt::Key_G),
                                        controller->generateBtn.data(), &QPushButton::click);
    followControl(generate, controller->generateBtn);
    menu->addSeparator();
    QAction* close =
        menu->addAction(tr("&Close"), QKeySequence(QKeySequence::Close), this, closeActiveWindow);
    close->setShortcutContext(Qt::ApplicationShortcut);
    QAction* save = menu->addAction(tr("&Save"));
    save->setShortcut(QKeySequence(QKeySequence::Save));
    save->setEnabled(false);
}

void MainMenu::addEditMenu(QMenuBar& bar) {
    MainWindowController* controller = m_delegate.mainWindowController();
    QMenu* menu = bar.addMenu(tr("&Edit"));
    QAction* undo = menu->addAction(tr("&Undo"));
    undo->setShortcut(QKeySequence(QKeySequence::Undo));
    undo->setEnabled(false);
    QAction* redo = menu->addAction(tr("&Redo"));
    redo->setShortcut(QKeySequence(QKeySequence::Redo));
    redo->setEnabled(false);
    menu->addSeparator();
    m_copy = menu->addAction(tr("&Copy"), QKeySequence(QKeySequence::Copy), controller,
                             &MainWindowController::copyPicture);
    m_paste = menu->addAction(tr("&Paste"), QKeySequence(QKeySequence::Paste), controller,
                              &MainWindowController::pastePicture);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, &MainMenu::validateEdit);
    connect(menu, &QMenu::aboutToShow, this, &MainMenu::validateEdit);
    NotificationCenter::defaultCenter().addObserver(this, BorderImageView::imageAdded,
                                                    [this](const Notification&) { validateEdit(); });
    validateEdit();
}

void MainMenu::validateEdit() {
    m_copy->setEnabled(!m_delegate.mainWindowController()->sourceImage().isNull());
    m_paste->setEnabled(MainWindowController::canPaste(QGuiApplication::clipboard()->mimeData()));
}

void MainMenu::addViewMenu(QMenuBar& bar) {
    MainWindowController* controller = m_delegate.mainWindowController();
    QMenu* menu = bar.addMenu(tr("&View"));
    // Each is the control that it names, and does what a click on that does.
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
    menu->addAction(QStringLiteral("Tobrimax"), this,
                    [this] { m_delegate.mainWindowController()->showWindow(this); });
}

void MainMenu::addHelpMenu(QMenuBar& bar) {
    QMenu* menu = bar.addMenu(tr("&Help"));
    menu->addAction(tr("Tobrimax &Help"), QKeySequence(QKeySequence::HelpContents), this,
                    [this] { m_delegate.showHelpUrl(this); });
}
