#pragma once

#include <QObject>
#include <QPalette>

class QApplication;

/// The application's colours: one light and one dark set, of which the desktop's palette chooses, also while
/// the program runs. They go with the dark sliders and buttons of the layouts.
class Appearance final : public QObject {
    Q_OBJECT

  public:
    /// `application` must live as long as this.
    explicit Appearance(QApplication& application);

    /// The colours of ours to lay over those of `desktop`: its resolve mask tells which they are.
    static QPalette over(const QPalette& desktop);

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void apply();

    QApplication& m_application;
    bool m_isApplying = false;
};
