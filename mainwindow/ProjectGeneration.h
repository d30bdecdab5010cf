#pragma once

#include "generation/GenerationObserver.h"
#include "layouts/LayoutSet.h"
#include "layouts/LayoutSources.h"
#include "mainwindow/ShownPicture.h"

#include <QStringList>

#include <optional>
#include <vector>

/// What icons for a project are made from, besides the picture and its decoration.
struct ProjectSettings {
    QStringList layouts;
    PictureFit fit;
    std::optional<Color> background; ///< opaque; white where it was not chosen
    ShownPicture dark;
    ShownPicture tinted;
    ShownPicture foreground;
    ShownPicture monochrome;
    QString folder; ///< of the project; empty where none was chosen
};

/// What came of a generation into a project.
struct ProjectOutcome {
    struct Failure {
        QString path; ///< below the project's folder
        QString sentence;
    };

    std::vector<GenerationObserver::File> files; ///< with paths below the project's folder
    std::vector<Failure> failures;
    std::vector<Warning> warnings;
    std::vector<LayoutNote> notes; ///< lines that files of the project lack
};

/// Writes a project's icons, as the layouts say. The files are those that the command line writes.
class ProjectGeneration {
  public:
    /// `picture` is kept by reference.
    ProjectGeneration(const ShownPicture& picture, const IconStyle& style)
        : m_picture(picture), m_style(style) {}

    /// The pictures as the files of `set` will show them, from the pixels that are kept, and all that is to
    /// be said of them. Fails as `loadedPictures`.
    Result<SourcedPictures> preview(const LayoutSet& set, const ProjectSettings& settings) const;

    /// Writes the files. Where a picture, a layout or the folder can't be used, nothing is written, and the
    /// error's sentence names it.
    Result<ProjectOutcome> write(const ProjectSettings& settings) const;

    const IconStyle& style() const { return m_style; }

  private:
    Result<SourcedPictures> told(Result<SourcedPictures> pictures, const LayoutSet& set,
                                 const ProjectSettings& settings) const;

    const ShownPicture& m_picture;
    IconStyle m_style;
};
