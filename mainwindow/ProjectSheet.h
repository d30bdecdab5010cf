#pragma once

#include "layouts/LayoutSet.h"
#include "mainwindow/ProjectGeneration.h"
#include "platform/services/Workspace.h"

#include <QDialog>

#include <memory>

namespace Ui {
class ProjectSheet;
}
class PictureWell;

/// The sheet that writes icons into a project: which layouts, how they look, where the project is. Beside
/// them it shows the icons, and what is to be said of them. After the writing it shows what came of it.
class ProjectSheet final : public QDialog {
    Q_OBJECT

  public:
    /// The icons are made from `picture`, decorated with `style`. The sheet begins with `settings` and leaves
    /// there what the user chose; these and `workspace` outlive it.
    ProjectSheet(QWidget* parent, ShownPicture picture, const IconStyle& style, ProjectSettings& settings,
                 Workspace& workspace);
    ~ProjectSheet() override;

    void done(int result) override;

  private:
    void fill();
    void follow();
    void readControls();
    void changeLayouts();
    /// Shows the icons anew before the next event, however often it is asked for that.
    void refreshSoon();
    void refresh();
    void tell(const QString& sentence, bool isReady);
    QString lacking() const;
    void refusePicture(const QString& path, const QString& sentence);
    void chooseFolder();
    void generate();
    void openFolder();
    QSize firstSize() const;

    std::unique_ptr<Ui::ProjectSheet> m_ui;
    ShownPicture m_picture;
    ProjectGeneration m_generation;
    ProjectSettings& m_settings;
    Workspace& m_workspace;
    Result<LayoutSet> m_layouts = LayoutSet();
    bool m_areLayoutsNew = true;
    bool m_isRefreshing = false;
};
