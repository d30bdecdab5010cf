#include "platform/widgets/Alert.h"

#include "platform/services/Bundle.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

#include <utility>

Alert::Alert() {
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    setAlertStyle(Style::Warning);
    // A path in a message is no markup.
    setTextFormat(Qt::PlainText);
}

void Alert::setMessageText(const QString& text) {
    setText(text);
    // A window list shows this.
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
    // Return is the first button's, wherever the focus is.
    button->setAutoDefault(isFirst);
    if (isFirst)
        setDefaultButton(button);
}

int Alert::returnCode() const {
    for (const auto& [button, code] : m_buttons) {
        if (button == clickedButton())
            return code;
    }
    // Ended by something else.
    return result();
}

QAbstractButton* Alert::cancelButton() const {
    for (const auto& [button, code] : m_buttons) {
        // A desktop may have marked a letter of it.
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
    // Wide enough for a sentence, and the message set off from what explains it.
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

void Alert::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape && !event->matches(QKeySequence::Cancel)) {
        QMessageBox::keyPressEvent(event);
        return;
    }
    if (QAbstractButton* cancel = cancelButton())
        cancel->click();
}

void Alert::closeEvent(QCloseEvent* event) {
    event->ignore();
}
