#include "platform/widgets/Alert.h"

#include "platform/services/Bundle.h"
#include "platform/widgets/BackgroundMover.h"
#include "platform/widgets/Contrast.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

#include <utility>

Alert::Alert() {
    // Some window managers put a minimise, a maximise and a close button on every title bar, whatever a
    // window asks for.
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    new BackgroundMover(*this);
    setAlertStyle(Style::Warning);
    // A message may hold a path. A path is not markup.
    setTextFormat(Qt::PlainText);
}

void Alert::setMessageText(const QString& text) {
    setText(text);
    // The desktop's window list shows the title.
    setWindowTitle(text);
}

void Alert::setAlertStyle(Style style) {
    setIcon(style == Style::Warning ? Warning : style == Style::Critical ? Critical : Information);
}

void Alert::addButtonWithTitle(const QString& title) {
    addButtonWithTitle(title, firstButtonReturn + static_cast<int>(m_buttons.size()));
}

void Alert::addButtonWithTitle(const QString& title, int returnCode) {
    const bool isFirst = m_buttons.empty();
    QPushButton* button = addButton(title, isFirst ? AcceptRole : RejectRole);
    m_buttons.emplace_back(button, returnCode);
    // Return presses the first button, wherever the focus is.
    button->setAutoDefault(isFirst);
    if (isFirst)
        setDefaultButton(button);
}

int Alert::returnCode() const {
    for (const auto& [button, code] : m_buttons) {
        if (button == clickedButton())
            return code;
    }
    // Something other than a button has ended the alert.
    return result();
}

QAbstractButton* Alert::escapeButton() const {
    if (m_buttons.size() == 1)
        return m_buttons.front().first;
    for (const auto& [button, code] : m_buttons) {
        // A desktop may have marked a letter of the title with "&".
        const QString title = button->text().remove(QLatin1Char('&'));
        if (title == QLatin1String("Cancel") ||
            title == Bundle::localizedStringForKey(QStringLiteral("Cancel"), {}, {}))
            return button;
    }
    return nullptr;
}

void Alert::beginSheetModalForWindow(QWidget* window, std::function<void(int)> completionHandler) {
    setParent(window, windowFlags());
    setAttribute(Qt::WA_DeleteOnClose);
    connect(this, &QDialog::finished, this, [this, handler = std::move(completionHandler)] {
        if (handler)
            handler(returnCode());
    });
    open();
}

int Alert::runModal() {
    exec();
    return returnCode();
}

void Alert::showEvent(QShowEvent* event) {
    // The alert is wide enough for a sentence. The message is bold, the informative text is not.
    constexpr int readableWidth = 40;
    for (QLabel* label : findChildren<QLabel*>()) {
        if (label->text() == text()) {
            QFont bold = label->font();
            bold.setBold(true);
            label->setFont(bold);
        }
        if (!informativeText().isEmpty() && label->text() == informativeText())
            label->setMinimumWidth(readableWidth * label->fontMetrics().averageCharWidth());
    }
    QMessageBox::showEvent(event);
}

void Alert::paintEvent(QPaintEvent* event) {
    QMessageBox::paintEvent(event);
    // The line sets the alert off from the window behind it.
    QPainter painter(this);
    painter.setPen(edgeColor(palette()));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void Alert::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape && !event->matches(QKeySequence::Cancel)) {
        QMessageBox::keyPressEvent(event);
        return;
    }
    if (QAbstractButton* pressed = escapeButton())
        pressed->click();
}

void Alert::closeEvent(QCloseEvent* event) {
    event->ignore();
}
