#pragma once

#include <QMessageBox>

#include <functional>

/// A message that waits until one of its buttons is pressed. Return presses the first button. Escape presses
/// the only button, or the button "Cancel" (in English or in the current language), if there is one. Closing
/// the alert in another way does nothing; the alert has no title bar with buttons for that. Any part without
/// a control moves it.
class Alert : public QMessageBox {
    Q_OBJECT

  public:
    enum class Style { Warning, Informational, Critical };

    /// The code of the first button. Each further button has one more, unless it was added with a code of its
    /// own.
    static constexpr int firstButtonReturn = 1000;

    Alert();

    void setMessageText(const QString& text);
    void setAlertStyle(Style style);
    // The informative text is set with the base class's setInformativeText.

    void addButtonWithTitle(const QString& title);
    void addButtonWithTitle(const QString& title, int returnCode);

    /// Shows the alert as a sheet and returns at once. The sheet blocks `window` and no other window. When a
    /// button is pressed, `completionHandler` (if any) gets the button's code; then the alert deletes itself.
    void beginSheetModalForWindow(QWidget* window, std::function<void(int)> completionHandler = {});

    /// Shows the alert, blocks all windows and waits. Returns the code of the pressed button. If something
    /// else has ended the alert, returns the code that it was ended with.
    int runModal();

  protected:
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    int returnCode() const;
    QAbstractButton* escapeButton() const;

    std::vector<std::pair<QAbstractButton*, int>> m_buttons;
};
