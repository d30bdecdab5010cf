#pragma once

#include <QMessageBox>

#include <functional>

/// A message that waits for one of its buttons. Return presses the first button, Escape only one that is
/// named "Cancel" (in the current language); closing it in another way does nothing.
class Alert : public QMessageBox {
    Q_OBJECT

  public:
    enum class Style { Warning, Informational, Critical };

    /// What an alert answers: 1000 for the first button and one more for each that follows, or the code that
    /// the button was added with.
    static constexpr int firstButtonReturn = 1000;

    Alert();

    void setMessageText(const QString& text);
    void setAlertStyle(Style style);
    // Its informative text is the base class's.

    void addButtonWithTitle(const QString& title);
    void addButtonWithTitle(const QString& title, int returnCode);

    /// Shows the alert as a sheet: it blocks `window` and no other, and this returns at once. The alert
    /// deletes itself when a button has been pressed, after `completionHandler` (if any) has been given the
    /// button's code.
    void beginSheetModalForWindow(QWidget* window, std::function<void(int)> completionHandler = {});

    /// Shows the alert, blocks all windows, and returns the code of the button that was pressed, or the one
    /// that it was ended with.
    int runModal();

  protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    int returnCode() const;
    QAbstractButton* cancelButton() const;

    std::vector<std::pair<QAbstractButton*, int>> m_buttons;
};
