#pragma once

#include <QObject>
#include <QPalette>

class QApplication;

/// Keeps the application's colours readable on whatever palette the desktop has, light or dark, and goes on
/// doing so when that changes.
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
};
