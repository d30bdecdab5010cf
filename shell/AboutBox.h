#pragma once

#include <QDialog>

/// Shows the program's version, the libraries that it uses and their licences.
class AboutBox final : public QDialog {
    Q_OBJECT

  public:
    explicit AboutBox(QWidget* parent);
};
