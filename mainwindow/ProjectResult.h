#pragma once

#include "mainwindow/ProjectGeneration.h"

#include <QWidget>

class QLabel;
class QTreeWidget;
class QVBoxLayout;

/// What came of a generation into a project: the files, what failed, the lines that the project's own files
/// lack, and the warnings.
class ProjectResult final : public QWidget {
    Q_OBJECT

  public:
    explicit ProjectResult(QWidget* parent = nullptr);

    void show(const ProjectOutcome& outcome, const QString& folder);
    using QWidget::show;

    /// Tells more, below all else.
    void addMessage(const QString& sentence);

  private:
    void addWords(const QStringList& sentences, const QString& name);
    void addNote(const QString& file, const QStringList& lines);

    QLabel* m_heading;
    QLabel* m_folder;
    QTreeWidget* m_files;
    QVBoxLayout* m_remarks;
};
