#pragma once

#include "generation/Platforms.h"

#include <QLabel>

class Bundle;
class Screen;
class QComboBox;

/// Says what Generate will write for the chosen platform: a line for each folder, from the size catalogue.
class PlanCaption final : public QLabel {
    Q_OBJECT

  public:
    explicit PlanCaption(QWidget* parent = nullptr);

    /// Follows the choice in `platforms`. The references are kept; the catalogue is read at each change.
    void follow(QComboBox& platforms, const Bundle& bundle, const Screen& screen);

    QSize sizeHint() const override;

  private:
    void makeRoom();
    QString words(int platformIndex) const;
    void describe(int platformIndex);
    QString line(Platform platform) const;

    int m_height = 0;
    const QComboBox* m_platforms = nullptr;
    const Bundle* m_bundle = nullptr;
    const Screen* m_screen = nullptr;
};
