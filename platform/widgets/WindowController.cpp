#include "platform/widgets/WindowController.h"

#include <utility>

WindowController::WindowController(QString windowNibName) : m_windowNibName(std::move(windowNibName)) {}

WindowController::~WindowController() = default;

QWidget* WindowController::window() {
    if (m_window == nullptr) {
        m_window = loadWindow();
        windowDidLoad();
    }
    return m_window.get();
}

void WindowController::showWindow(QObject* /*sender*/) {
    QWidget* shown = window();
    if (shown->isMinimized())
        shown->setWindowState(shown->windowState() & ~Qt::WindowMinimized);
    shown->show();
    shown->raise();
    shown->activateWindow();
}

void WindowController::windowDidLoad() {}
