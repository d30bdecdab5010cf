#pragma once

#include <QObject>
#include <QPalette>

class QApplication;

/// The application's colours, a light and a dark set, and the edges of its controls. The desktop's palette
/// decides which set is used, also when it changes while the program runs. Both sets go with the dark sliders
/// and buttons of the layouts.
class Appearance final : public QObject {
    Q_OBJECT

  public:
    /// Keeps `application` by reference. It must live at least as long as this object.
    explicit Appearance(QApplication& application);

    /// The application's colours for a desktop with the palette `desktop`. The resolve mask marks the colours
    /// that are set; the desktop's stay for the others.
    static QPalette over(const QPalette& desktop);

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void apply();

    QApplication& m_application;
    bool m_isApplying = false;
};
