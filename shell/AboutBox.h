#pragma once

#include <QDialog>

/// Tells the program's version, and the libraries that it is made with and their licences.
class AboutBox final : public QDialog {
    Q_OBJECT

  public:
    explicit AboutBox(QWidget* parent);
};
